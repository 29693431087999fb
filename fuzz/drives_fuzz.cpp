// A sequence of physical drive calls over store files of any content, with a host and a libc that fail at any point.

#include "fuzz/fuzz_host.h"

namespace {

constexpr char kStore[] = "/var/storphydrive_info";
constexpr size_t kRecordSize = 453;

// A store file whose records differ little from one call to the next, so that some are known, modified and gone, and
// whose announced number is seldom theirs.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(choices.byte() % 8 == 0 ? choices.byte() % 5 : 4);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    std::string record(kRecordSize, '\0');
    record[1] = static_cast<char>(choices.byte() % 4);
    record[81] = static_cast<char>(choices.byte() % 4);
    record[128] = static_cast<char>(choices.byte() % 4);
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
  host.write("/var/storctlr_info", "");
  host.write(kStore, std::string(4, '\0'));
  host.call("mc_get_store_phydrives", 65536, choices);  // nothing known
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kStore, store_file(choices));
    if (what & 2) host.write("/var/mctool_stordebug", "");
    if (what & 4) host.write("/var/mctool_pddebug", "");
    if ((what & 0x18) == 0x18) host.remove(kStore);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * 64u;
    host.call(what & 0x80 ? "mc_get_store_phydrives" : "mc_delta_store_phydrives", buffer_size, choices);
  }
  return 0;
}
