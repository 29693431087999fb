// A sequence of controller calls over store files of any content, with a host and a libc that fail at any point.

#include "fuzz/fuzz_host.h"

namespace {

constexpr char kStore[] = "/var/storctlr_info";
constexpr size_t kRecordSize = 1294;

// A store file whose records differ little from one call to the next, so that some are known, modified and gone.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(1);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    std::string record(kRecordSize, '\0');
    record[0] = static_cast<char>(choices.byte() % 4);
    record[104] = 1;
    record[107] = static_cast<char>(choices.byte() % 4);
    for (size_t id = 255; id < 263; ++id) record[id] = 1;
    record[827] = static_cast<char>(choices.byte() % 4);
    if (choices.byte() % 4 == 0) record.assign(kRecordSize, static_cast<char>(choices.byte()));
    file += record;
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host(PLUGIN_PATH);
  fuzz::Choices choices(data, size);
  host.start_over();
  host.write(kStore, std::string(1, '\0'));
  host.call("mc_get_store_ctrls", 65536, choices);  // nothing known, state 0
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kStore, store_file(choices));
    if (what & 2) host.write("/var/mctool_stordebug", "");
    if (what & 4) host.write("/var/mctool_ctlrdebug", "");
    if (what & 8) host.write("/etc/product", choices.bytes(choices.byte() % 80));
    if ((what & 0x30) == 0x30) host.remove(kStore);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * 256u;
    host.call(what & 0x80 ? "mc_get_store_ctrls" : "mc_delta_store_ctrls", buffer_size, choices);
  }
  return 0;
}
