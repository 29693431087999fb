// A sequence of BBU calls over store files and flash-module images of any content, with a host and a libc that fail at
// any point.

#include "fuzz/fuzz_host.h"

namespace {

constexpr char kStore[] = "/var/storBBU_info";
constexpr char kImage[] = "/var/log/TFM_FRU.bin";
constexpr size_t kRecordSize = 161;
constexpr size_t kImageSize = 128;

// A store file whose records differ little from one call to the next, so that some are known and modified.
std::string store_file(fuzz::Choices &choices) {
  std::string file;
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    std::string record(kRecordSize, '\0');
    record[0] = static_cast<char>(choices.byte() % 4);
    record[72] = static_cast<char>(choices.byte() % 2);
    record[85] = static_cast<char>(choices.byte() % 4);
    if (choices.byte() % 4 == 0) record.assign(kRecordSize, static_cast<char>(choices.byte()));
    file += record;
  }
  return file + choices.bytes(choices.byte());
}

// A whole image of any content; now and then a short one.
std::string image(fuzz::Choices &choices) {
  const bool is_short = choices.byte() % 8 == 0;
  std::string bytes = choices.bytes(is_short ? choices.byte() : kImageSize);
  if (!is_short) bytes.resize(kImageSize);
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host(PLUGIN_PATH);
  fuzz::Choices choices(data, size);
  host.start_over();
  host.write("/var/storctlr_info", "");
  host.write(kStore, "");
  host.call("mc_get_store_bbu", 65536, choices);  // nothing known
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kStore, store_file(choices));
    if (what & 2) host.write("/var/mctool_stordebug", "");
    if (what & 4) host.write("/var/mctool_bbudebug", "");
    if (what & 8) host.write(kImage, image(choices));
    if ((what & 0x30) == 0x30) host.remove(kStore);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * 16u;
    host.call(what & 0x80 ? "mc_get_store_bbu" : "mc_delta_store_bbu", buffer_size, choices);
  }
  return 0;
}
