// Fuzzes virtual drives.

#include <algorithm>
#include <iterator>

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/virtual_drive_record.h"

namespace {

// A store file whose records differ little from one call to the next, so that some are known, modified and gone; now
// and then one without an identity, or without a NUL.
std::string store_file(fuzz::Choices &choices) {
  std::string file;
  const int records = choices.byte() % 6;
  for (int i = 0; i < records; ++i) {
    StorVirtDriveInfo record = {};
    record.guid[0] = static_cast<char>(choices.byte() % 4);
    record.mod_timestamp = choices.byte() % 4;
    record.num_physical_drives = choices.byte();
    record.num_hot_spares = choices.byte();
    const uint8_t special = choices.byte() % 4;
    if (special == 1) std::fill(std::begin(record.guid), std::end(record.guid), '0');
    file += special == 0 ? fuzz::record_filled_with<StorVirtDriveInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kVirtualDriveFacts,
      .empty_store = "",
      .store_file = store_file,
      .record_marker = "/var/mctool_stordebug",
      .list_marker = "/var/mctool_vddebug",
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_store_virtdrives",
      .delta = "mc_delta_store_virtdrives",
      .buffer_step = 256,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
