// Fuzzes NVMe drives.

#include <algorithm>

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/nvme_drive_record.h"

namespace {

// A store file whose records differ little from one call to the next, so that some are known, modified and gone; now
// and then one without any NUL, or of any place.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(5);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    NvmePhyDriveInfo record = {};
    record.serial_number[0] = static_cast<char>(choices.byte() % 4);
    record.mod_timestamp = choices.byte() % 4;
    const uint8_t special = choices.byte() % 4;
    if (special == 2) std::ranges::copy(choices.bytes(sizeof record.serial_number), record.serial_number);
    if (special == 3) std::ranges::copy(choices.bytes(sizeof record.smbios_pcislotname), record.smbios_pcislotname);
    file += special == 1 ? fuzz::record_filled_with<NvmePhyDriveInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kNvmeDriveFacts,
      .empty_store = fuzz::record_filled_with<mcserver::records::NvmeDriveFileHeader>(0),
      .store_file = store_file,
      .record_marker = nullptr,
      .list_marker = nullptr,
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_nvme_phy_drive",
      .delta = "mc_event_nvme_phy_drive",
      .buffer_step = 64,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
