// Fuzzes the decoders: files of any content, while libc fails at any point.

#include <iterator>

#include "fuzz/host/fuzz_host.h"

namespace {

struct Kind {
  const char *decoder;
  const char *store;
  size_t header_size;
  size_t record_size;
};

constexpr Kind kKinds[] = {
    {"list_controllers", "/in/storctlr_info", 1, 1294},
    {"list_physical_drives", "/in/storphydrive_info", 4, 453},
    {"list_virtual_drives", "/in/storvirtdrive_info", 0, 5799},
    {"list_bbus", "/in/storBBU_info", 0, 161},
    {"list_nvme_controllers", "/in/nvmectlr_info", 1, 262},
    {"list_nvme_physical_drives", "/in/nvmephydrive_info", 5, 356},
};

// Each record is a byte that fills it, with a few others strewn in; the last one may be short.
std::string store_file(const Kind &kind, fuzz::Choices &choices) {
  std::string file = choices.bytes(kind.header_size);
  for (int records = choices.byte() % 5; records > 0; --records) {
    std::string record(kind.record_size, static_cast<char>(choices.byte()));
    for (int changes = choices.byte() % 8; changes > 0; --changes) {
      const size_t at = (choices.byte() * 256u + choices.byte()) % kind.record_size;
      record[at] = static_cast<char>(choices.byte());
    }
    file += record;
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host(PLUGIN_PATH);
  fuzz::Choices choices(data, size);
  host.start_over();
  host.write("/out/an_older_file", "");
  while (!choices.exhausted()) {
    const Kind &kind = kKinds[choices.byte() % std::size(kKinds)];
    host.write(kind.store, store_file(kind, choices));
    host.fail_one_in(choices.byte(), &choices);
    host.decode(kind.decoder, "/in", "/out");
    host.fail_one_in(0, &choices);
  }
  return 0;
}
