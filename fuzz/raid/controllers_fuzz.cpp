// Fuzzes RAID controllers.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/controller_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<StorCtlrInfo, CtlrSummary, StoreReplyHeader> given(choices);
  const uint8_t which = choices.below(6);
  host.call([&] {
    switch (which) {
      case 0:
        list_controllers(given.path, given.other_path);
        break;
      case 1:
        print_ctlrinfo(given.record(), given.stream());
        break;
      case 2:
        print_ctlr_list(given.cached.data(), given.cached.count(), given.title());
        break;
      case 3:
        new_ctlr_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 4:
        print_controllerinfo(given.path, given.record());
        break;
      default:
        add_deleted_ctlrs(given.reply(), given.cur.count(), given.cur.data(), given.cached.count(),
                          given.cached.data());
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kControllerFacts,
      .header_size = sizeof(mcserver::records::ControllerFileHeader),
      .record_size = sizeof(StorCtlrInfo),
      .stamp = offsetof(StorCtlrInfo, mod_timestamp),
      .switches = {fuzz::kSimulation, "/var/mctool_stordebug", "/var/mctool_ctlrdebug", "/etc/product"},
      .full = mc_get_store_ctrls,
      .delta = mc_delta_store_ctrls,
      .retrieve = get_store_ctrls,
      // The whole reply is written to the buffer that was passed in, even when it was replaced by a larger one.
      .simulated_beyond = sizeof(StoreReplyHeader) + 2 * sizeof(StorCtlrInfo),
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
