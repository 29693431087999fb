// Fuzzes NVMe controllers and switches.

#include <algorithm>

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/nvme_controller_record.h"

namespace {

// A store file whose records differ little from one call to the next, so that some are known, modified and gone; now
// and then one without any NUL, or of any name.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(1);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    NvmeCtlrInfo record = {};
    record.controller_name[0] = static_cast<char>(choices.byte() % 4);
    record.mod_timestamp = choices.byte() % 4;
    const uint8_t special = choices.byte() % 4;
    if (special == 2) std::ranges::copy(std::string("NVME-MSWITCH"), record.controller_type);
    if (special == 3) std::ranges::copy(choices.bytes(sizeof record.controller_name), record.controller_name);
    file += special == 1 ? fuzz::record_filled_with<NvmeCtlrInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kNvmeControllerFacts,
      .empty_store = fuzz::record_filled_with<mcserver::records::NvmeControllerFileHeader>(0),
      .store_file = store_file,
      .record_marker = nullptr,
      .list_marker = nullptr,
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_nvme_controller",
      .delta = "mc_event_nvme_controller",
      .buffer_step = 64,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
