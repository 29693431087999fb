// Fuzzes NVMe drives.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/nvme_drive_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<NvmePhyDriveInfo, NvmeDriveSummary, NvmeDriveImageHeader> given(choices);
  uint32_t size = given.text_size;
  const uint8_t which = choices.below(5);
  host.call([&] {
    switch (which) {
      case 0:
        list_nvme_physical_drives(given.path, given.other_path);
        break;
      case 1:
        print_nvme_pdinfo(given.record(), given.stream());
        break;
      case 2:
        new_nvme_drive_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 3:
        print_nvme_physicaldriveinfo(given.path, given.record());
        break;
      default:
        add_deleted_nvme_drives(given.reply(), given.cur.count(), given.cur.data(), given.cached.count(),
                                given.cached.data());
        xmlize_nvme_phy_drive(given.reply(), given.out(), &size);
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kNvmeDriveFacts,
      .header_size = sizeof(mcserver::records::NvmeDriveFileHeader),
      .record_size = sizeof(NvmePhyDriveInfo),
      .stamp = offsetof(NvmePhyDriveInfo, mod_timestamp),
      .switches = {fuzz::kSimulation},  // which these kinds do not heed
      .full = mc_get_nvme_phy_drive,
      .delta = mc_event_nvme_phy_drive,
      .retrieve = get_nvme_phy_drive_info,
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
