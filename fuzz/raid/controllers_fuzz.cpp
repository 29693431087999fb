// Fuzzes RAID controllers; the other file names the server.

#include "fuzz/raid/raid_kind.h"

namespace {

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
  static const fuzz::RaidKind kKind = {
      .store = "/var/storctlr_info",
      .empty_store = std::string(1, '\0'),
      .store_file = store_file,
      .list_marker = "/var/mctool_ctlrdebug",
      .other_path = "/etc/product",
      .other_file = [](fuzz::Choices &choices) { return choices.bytes(choices.byte() % 80); },
      .full = "mc_get_store_ctrls",
      .delta = "mc_delta_store_ctrls",
      .buffer_step = 256,
  };
  return fuzz::fuzz_raid_kind(kKind, data, size);
}
