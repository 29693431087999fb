// Fuzzes physical drives.

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/drive_record.h"

namespace {

// A store file whose records differ little from one call to the next, so that some are known, modified and gone, and
// whose announced number is seldom theirs.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(choices.byte() % 8 == 0 ? choices.byte() % 5 : 4);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    StorPhyDriveInfo record = {};
    record.slot_num = choices.byte() % 4;
    record.serial_num[0] = static_cast<char>(choices.byte() % 4);
    record.mod_timestamp = choices.byte() % 4;
    const bool is_of_one_byte = choices.byte() % 4 == 0;
    file += is_of_one_byte ? fuzz::record_filled_with<StorPhyDriveInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kDriveFacts,
      .empty_store = fuzz::record_filled_with<mcserver::records::DriveFileHeader>(0),
      .store_file = store_file,
      .record_marker = "/var/mctool_stordebug",
      .list_marker = "/var/mctool_pddebug",
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_store_phydrives",
      .delta = "mc_delta_store_phydrives",
      .buffer_step = 64,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
