// Fuzzes SAS expanders, which have nothing but a simulation.

#include "fuzz/host/fuzz_host.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host;
  fuzz::Choices choices(data, size);
  host.start_over();
  while (!choices.exhausted()) switch (choices.below(6)) {
      case 0:
        host.files.write(fuzz::kSimulation, "", 0);
        break;
      case 1:
        host.set_trace(choices);
        break;
      case 2:
        host.disturb("", choices);
        break;
      case 3:
        host.call_entry_point(mc_get_store_sasexpanders, 0, choices);
        break;
      case 4:
        host.call_entry_point(mc_delta_store_sasexpanders, 0, choices);
        break;
      default:
        host.call_entry_point(get_store_sasexpanders, 0, choices);
    }
  return 0;
}
