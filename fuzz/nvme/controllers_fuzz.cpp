// Fuzzes NVMe controllers and switches.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/nvme_controller_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<NvmeCtlrInfo, NvmeCtlrSummary, NvmeCtlrImageHeader> given(choices);
  uint32_t size = given.text_size;
  const uint8_t which = choices.below(5);
  host.call([&] {
    switch (which) {
      case 0:
        list_nvme_controllers(given.path, given.other_path);
        break;
      case 1:
        print_nvme_ctlrinfo(given.record(), given.stream());
        break;
      case 2:
        new_nvme_ctlr_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 3:
        print_nvme_controllerinfo(given.path, given.record());
        break;
      default:
        add_deleted_nvme_ctlrs(given.reply(), given.cur.count(), given.cur.data(), given.cached.count(),
                               given.cached.data());
        xmlize_nvme_controller(given.reply(), given.out(), &size);
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kNvmeControllerFacts,
      .header_size = sizeof(mcserver::records::NvmeControllerFileHeader),
      .record_size = sizeof(NvmeCtlrInfo),
      .stamp = offsetof(NvmeCtlrInfo, mod_timestamp),
      .switches = {fuzz::kSimulation},  // which these kinds do not heed
      .full = mc_get_nvme_controller,
      .delta = mc_event_nvme_controller,
      .retrieve = get_nvme_controller_info,
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
