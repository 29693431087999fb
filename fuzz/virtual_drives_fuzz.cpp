// A sequence of virtual drive calls over store files of any content, with a host and a libc that fail at any point.

#include "fuzz/fuzz_host.h"

namespace {

constexpr char kStore[] = "/var/storvirtdrive_info";
constexpr size_t kRecordSize = 5799;

// A store file whose records differ little from one call to the next, so that some are known, modified and gone.
std::string store_file(fuzz::Choices &choices) {
  std::string file;
  const int records = choices.byte() % 6;
  for (int i = 0; i < records; ++i) {
    std::string record(kRecordSize, '\0');
    record[2] = static_cast<char>(choices.byte() % 4);
    record[5254] = static_cast<char>(choices.byte() % 4);
    record[77] = static_cast<char>(choices.byte());
    record[94] = static_cast<char>(choices.byte());
    const uint8_t kind = choices.byte() % 4;
    if (kind == 0) record.assign(kRecordSize, static_cast<char>(choices.byte()));
    if (kind == 1) record.replace(2, 33, std::string(33, '0'));
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
  host.write(kStore, "");
  host.call("mc_get_store_virtdrives", 65536, choices);  // nothing known
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kStore, store_file(choices));
    if (what & 2) host.write("/var/mctool_stordebug", "");
    if (what & 4) host.write("/var/mctool_vddebug", "");
    if ((what & 0x18) == 0x18) host.remove(kStore);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * 256u;
    host.call(what & 0x80 ? "mc_get_store_virtdrives" : "mc_delta_store_virtdrives", buffer_size, choices);
  }
  return 0;
}
