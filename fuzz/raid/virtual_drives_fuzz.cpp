// Fuzzes virtual drives.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/virtual_drive_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<StorVirtDriveInfo, VdSummary, VirtDriveReplyHeader> given(choices);
  const uint8_t which = choices.below(6);
  host.call([&] {
    switch (which) {
      case 0:
        list_virtual_drives(given.path, given.other_path);
        break;
      case 1:
        print_vdinfo(given.record(), given.stream());
        break;
      case 2:
        print_vd_list(given.cached.data(), given.cached.count(), given.title());
        break;
      case 3:
        new_virtdrive_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 4:
        print_virtualdriveinfo(given.path, given.record());
        break;
      default:
        find_deleted_virtdrives(given.reply(), given.cur.count(), given.cur.data(), given.cached.count(),
                                given.cached.data(), given.number());
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kVirtualDriveFacts,
      .record_size = sizeof(StorVirtDriveInfo),
      .stamp = offsetof(StorVirtDriveInfo, mod_timestamp),
      .switches = {fuzz::kSimulation, "/var/mctool_stordebug", "/var/mctool_vddebug"},
      .full = mc_get_store_virtdrives,
      .delta = mc_delta_store_virtdrives,
      .retrieve = get_store_virtdrives,
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
