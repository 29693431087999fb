// Fuzzes BBUs; the other file is the flash module's image.

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/bbu_record.h"

namespace {

constexpr size_t kImageSize = 128;

// A store file whose records differ little from one call to the next, so that some are known and modified.
std::string store_file(fuzz::Choices &choices) {
  std::string file;
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    StorBbuInfo record = {};
    record.controller_index = choices.byte() % 4;
    record.capacitor = choices.byte() % 2;
    record.modified_timestamp = choices.byte() % 4;
    const bool is_of_one_byte = choices.byte() % 4 == 0;
    file += is_of_one_byte ? fuzz::record_filled_with<StorBbuInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

// A whole image of any content; now and then a short one.
std::string image(fuzz::Choices &choices) {
  const bool is_short = choices.byte() % 8 == 0;
  std::string bytes = choices.bytes(is_short ? choices.byte() : kImageSize);
  if (!is_short) bytes.resize(kImageSize);
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kBbuFacts,
      .empty_store = "",
      .store_file = store_file,
      .record_marker = "/var/mctool_stordebug",
      .list_marker = "/var/mctool_bbudebug",
      .other_path = "/var/log/TFM_FRU.bin",
      .other_file = image,
      .full = "mc_get_store_bbu",
      .delta = "mc_delta_store_bbu",
      .buffer_step = 16,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
