// Fuzzes physical drives.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/drive_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<StorPhyDriveInfo, PhyDriveSummary, PhyDriveReplyHeader> given(choices);
  const uint8_t which = choices.below(6);
  host.call([&] {
    switch (which) {
      case 0:
        list_physical_drives(given.path, given.other_path);
        break;
      case 1:
        print_pdinfo(given.record(), given.stream());
        break;
      case 2:
        print_pd_list(given.cached.data(), given.cached.count(), given.title());
        break;
      case 3:
        new_drive_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 4:
        print_physicaldriveinfo(given.path, given.record());
        break;
      default:
        add_deleted_drives(given.reply(), given.cur.count(), given.cur.data(), given.cached.count(),
                           given.cached.data());
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kDriveFacts,
      .header_size = sizeof(mcserver::records::DriveFileHeader),
      .record_size = sizeof(StorPhyDriveInfo),
      .stamp = offsetof(StorPhyDriveInfo, mod_timestamp),
      .switches = {fuzz::kSimulation, "/var/mctool_stordebug", "/var/mctool_pddebug"},
      .full = mc_get_store_phydrives,
      .delta = mc_delta_store_phydrives,
      .retrieve = get_store_phydrives,
      .simulated_beyond = sizeof(StorPhyDriveInfo),  // one more than announced
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
