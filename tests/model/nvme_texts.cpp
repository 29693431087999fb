// The texts of NVMe records. Nothing but the decoders writes them.

#include "model/dump.h"
#include "model/kinds.h"
#include "model/nvme.h"

namespace model {
namespace {

// The status of a part of a switch: a word, and where it is not optimal, the description.
std::string part_lines(const Bytes &record, size_t offset, const std::string &name, const std::string &fault,
                       const std::string &end) {
  const std::string stored = text(record.slice(offset, record.size() - offset));
  if (stored.starts_with("Optimal")) return name + ": " + stored + "\n";
  return name + ": " + fault + "\n" + name + "-desc: " + stored + end;
}

}  // namespace

std::string text_of_nvme_controller(const Bytes &record) {
  std::string lines = dumped(record, {{0, As::kText, "controller-name: %s\n"},
                                      {30, As::kText, "controller-type: %s\n"},
                                      {24, As::kU32, "mod-timestamp: %d\n"}}) +
                      "status: " + status_word(record[28]) + "\n" +
                      dumped(record, {{29, As::kU8, "drive-count: %d\n"}});
  if (!text(record.slice(30, 16)).starts_with("NVME-MSWITCH")) return lines;
  return lines +
         dumped(record, {{46, As::kText, "vendor-id: %s\n"},
                         {55, As::kText, "product-id: %s\n"},
                         {72, As::kU32, "component-id: %x\n"},
                         {76, As::kText, "product-revision: %s\n"},
                         {81, As::kU16, "p2p-vendor-id: %x\n"},
                         {83, As::kU16, "p2p-device-id: %x\n"},
                         {85, As::kText, "running-firmware-version: %s\n"},
                         {109, As::kText, "pending-firmware-version: %s\n"},
                         {133, As::kU8, "switch-temperature: %d\n"}}) +
         part_lines(record, 134, "switch-status", "Severe_Fault", "\n") +
         part_lines(record, 198, "link-status", "Moderate_Fault", "\n\n");
}

std::string text_of_nvme_drive(const Bytes &record) {
  return dumped(record, {{16, As::kText, "controller-name: %s\n"},
                         {0, As::kText, "smbios-pcislotname: %s\n"},
                         {41, As::kText, "product-name: %s\n"}}) +
         "status: " + status_word(record[40]) + "\n" +
         dumped(record, {{122, As::kText, "serial-number: %s\n"},
                         {153, As::kText, "firmware-version: %s\n"},
                         {250, As::kText, "vendor: %s\n"},
                         {270, As::kU16, "vendor-id: 0x%x\n"},
                         {272, As::kU16, "device-id: 0x%x\n"},
                         {274, As::kU16, "subvendor-id: 0x%x\n"},
                         {276, As::kU16, "subdevice-id: 0x%x\n"},
                         {278, As::kU8, "temperature: %d\n"},
                         {279, As::kText, "status-description: %s\n"},
                         {343, As::kU8, "drive-life-used-percent: %d\n"},
                         {344, As::kU16, "life-left-in-days: %d\n"},
                         {347, As::kU8, "percent-power-on-hours: %d\n"},
                         {346, As::kU8, "performance-percent: %d\n"},
                         {348, As::kU8, "throttle-threshold: %d\n"},
                         {349, As::kU8, "shutdown-threshold: %d\n"},
                         {352, As::kU32, "mod-timestamp: %d\n\n"}});
}

}  // namespace model
