// Fuzzes BBUs.

#include <cstddef>

#include "fuzz/host/given.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/bbu_record.h"

namespace {

void help(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const fuzz::Given<StorBbuInfo, BbuSummary, BbuReplyHeader> given(choices);
  const uint8_t which = choices.below(7);
  host.call([&] {
    switch (which) {
      case 0:
        list_bbus(given.path, given.other_path);
        break;
      case 1:
        print_bbuInfo(given.record(), given.stream());
        break;
      case 2:
        print_bbu_list(given.cached.data(), given.cached.count(), given.title());
        break;
      case 3:
        new_bbu_or_modified(given.record(), given.cached.data(), given.cached.count());
        break;
      case 4:
        print_BBUInfo(given.path, given.record());
        break;
      case 5:
        print_bbuTFMInfo(given.record());
        break;
      default:
        read_tarvo_tfm_vpd(given.record(), given.number());
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kBbuFacts,
      .record_size = sizeof(StorBbuInfo),
      .stamp = offsetof(StorBbuInfo, modified_timestamp),
      .switches = {fuzz::kSimulation, "/var/mctool_stordebug", "/var/mctool_bbudebug",
                   mcserver::records::kFlashModulePath},
      .full = mc_get_store_bbu,
      .delta = mc_delta_store_bbu,
      .retrieve = get_store_bbu,
      .help = help,
  };
  return fuzz::run(kTarget, data, size);
}
