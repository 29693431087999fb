// Fuzzes physical drives.

#include "fuzz/raid/raid_kind.h"

namespace {

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
  static const fuzz::RaidKind kKind = {
      .store = "/var/storphydrive_info",
      .empty_store = std::string(4, '\0'),
      .store_file = store_file,
      .list_marker = "/var/mctool_pddebug",
      .other_path = nullptr,
      .other_file = nullptr,
      .full = "mc_get_store_phydrives",
      .delta = "mc_delta_store_phydrives",
      .buffer_step = 64,
  };
  return fuzz::fuzz_raid_kind(kKind, data, size);
}
