// A sequence of NVMe calls over store files of any content, with a host and a libc that fail at any point.

#include "fuzz/host/fuzz_host.h"

namespace {

constexpr char kControllerStore[] = "/var/nvmectlr_info";
constexpr char kDriveStore[] = "/var/nvmephydrive_info";
constexpr size_t kControllerSize = 262;
constexpr size_t kDriveSize = 356;

// Records that differ little from one call to the next, so that some are known, modified and gone; now and then one
// without any NUL, or of any content.
std::string records(fuzz::Choices &choices, size_t size, size_t identity, size_t stamp) {
  std::string all;
  const int count = choices.byte() % 8;
  for (int i = 0; i < count; ++i) {
    std::string record(size, '\0');
    record[identity] = static_cast<char>(choices.byte() % 4);
    record[stamp] = static_cast<char>(choices.byte() % 4);
    const uint8_t kind = choices.byte() % 4;
    if (kind == 1) record.assign(size, static_cast<char>(choices.byte()));
    if (kind == 2) record.replace(30, 12, "NVME-MSWITCH");
    if (kind == 3) record.replace(0, 16, choices.bytes(16));
    all += record.substr(0, size);
  }
  return all + choices.bytes(choices.byte());
}

std::string controller_file(fuzz::Choices &choices) {
  return choices.bytes(1) + records(choices, kControllerSize, 0, 24);
}

std::string drive_file(fuzz::Choices &choices) { return choices.bytes(5) + records(choices, kDriveSize, 122, 352); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host(PLUGIN_PATH);
  fuzz::Choices choices(data, size);
  host.start_over();
  host.write(kControllerStore, std::string(1, '\0'));
  host.write(kDriveStore, std::string(5, '\0'));
  host.call("mc_get_nvme_controller", 65536, choices);  // nothing known, state 0
  host.call("mc_get_nvme_phy_drive", 65536, choices);
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kControllerStore, controller_file(choices));
    if (what & 2) host.write(kDriveStore, drive_file(choices));
    if ((what & 0x0C) == 0x0C) host.remove(what & 0x10 ? kControllerStore : kDriveStore);
    host.fail_one_in(what & 0x20 ? choices.byte() : 0, &choices);
    const bool full = what & 0x40;
    const uint32_t buffer_size = choices.byte() * 64u;
    if (what & 0x80)
      host.call(full ? "mc_get_nvme_controller" : "mc_event_nvme_controller", buffer_size, choices);
    else
      host.call(full ? "mc_get_nvme_phy_drive" : "mc_event_nvme_phy_drive", buffer_size, choices);
  }
  return 0;
}
