// Fuzzes virtual drives.

#include "fuzz/raid/raid_kind.h"

namespace {

constexpr size_t kRecordSize = 5799;

// A store file whose records differ little from one call to the next, so that some are known, modified and gone.
std::string store_file(fuzz::Choices &choices) {
  std::string file;
  const int records = choices.byte() % 6;
  for (int i = 0; i < records; ++i) {
    std::string record(kRecordSize, '\0');
    record[2] = static_cast<char>(choices.byte() % 4);
    record[5254] = static_cast<char>(choices.byte() % 4);
    record[77] = static_cast<char>(choices.byte());
    record[94] = static_cast<char>(choices.byte());
    const uint8_t kind = choices.byte() % 4;
    if (kind == 0) record.assign(kRecordSize, static_cast<char>(choices.byte()));
    if (kind == 1) record.replace(2, 33, std::string(33, '0'));
    file += record;
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::RaidKind kKind = {
      .store = "/var/storvirtdrive_info",
      .empty_store = "",
      .store_file = store_file,
      .list_marker = "/var/mctool_vddebug",
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_store_virtdrives",
      .delta = "mc_delta_store_virtdrives",
      .buffer_step = 256,
  };
  return fuzz::fuzz_raid_kind(kKind, data, size);
}
