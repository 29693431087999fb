// NVMe records, store files and staging images, byte by byte, and the XML that they make.
#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"

namespace tests {

inline constexpr char kNvmeControllerStore[] = "/var/nvmectlr_info";
inline constexpr char kNvmeDriveStore[] = "/var/nvmephydrive_info";
inline constexpr uint32_t kNvmeControllerSize = 262;  // a record's; every other size follows from it
inline constexpr uint32_t kNvmeDriveSize = 356;       // likewise
inline constexpr uint32_t kNvmeControllerImageHeaderSize = 14;
inline constexpr uint32_t kNvmeDriveImageHeaderSize = 18;

struct NvmeController {
  std::string name = "NVME-C1";
  uint32_t stamp = 1;
  uint8_t status = 1;
  uint8_t drive_count = 4;
  std::string type = "NVME-CTLR";
  std::string vendor_id = "VEND";
  std::string product_id = "SWITCH48";
  uint32_t component_id = 0xABCD;
  std::string product_revision = "ab";
  uint16_t p2p_vendor_id = 0x1234;
  uint16_t p2p_device_id = 0x5678;
  std::string running_firmware = "1.2.3";
  std::string pending_firmware = "1.2.4";
  uint8_t temperature = 45;
  std::string switch_status = "Optimal";
  std::string link_status = "Optimal";

  Bytes stored() const {
    return Bytes()
        .text(name, 24)
        .u32(stamp)
        .u8(status)
        .u8(drive_count)
        .text(type, 16)
        .text(vendor_id, 9)
        .text(product_id, 17)
        .u32(component_id)
        .text(product_revision, 5)
        .u16(p2p_vendor_id)
        .u16(p2p_device_id)
        .text(running_firmware, 24)
        .text(pending_firmware, 24)
        .u8(temperature)
        .text(switch_status, 64)
        .text(link_status, 64);
  }
};

// A controller without switch fields, as XML. `status` is the word.
inline std::string plain_controller_xml(const std::string &name, const std::string &status = "Optimal",
                                        const std::string &type = "NVME-CTLR", int drive_count = 4) {
  return "<NVME-ctlr controller-name=\"" + name + "\" controller-type=\"" + type + "\" status=\"" + status +
         "\" drive-count=\"" + std::to_string(drive_count) + "\" />";
}

struct NvmeDrive {
  std::string slot = "FRONT-NVME-1";
  std::string controller_name = "NVME-C1";
  uint8_t status = 1;
  std::string product_name = "NVMe SSD 1.6TB";
  std::string serial = "SN000123";
  std::string firmware = "FW1.0";
  std::string vendor = "VENDOR";
  uint16_t vendor_id = 0x1234;
  uint16_t device_id = 0x5678;
  uint16_t subvendor_id = 0x1234;
  uint16_t subdevice_id = 0x9ABC;
  uint8_t temperature = 35;
  std::string description = "Healthy";
  uint8_t life_used = 2;
  uint16_t life_left = 3650;
  uint8_t performance = 100;
  uint8_t power_on_hours = 10;
  uint8_t throttle = 70;
  uint8_t shutdown = 80;
  uint32_t stamp = 1;

  Bytes stored() const {
    return Bytes()
        .text(slot, 16)
        .text(controller_name, 24)
        .u8(status)
        .text(product_name, 81)
        .text(serial, 31)
        .text(firmware, 97)
        .text(vendor, 20)
        .u16(vendor_id)
        .u16(device_id)
        .u16(subvendor_id)
        .u16(subdevice_id)
        .u8(temperature)
        .text(description, 64)
        .u8(life_used)
        .u16(life_left)
        .u8(performance)
        .u8(power_on_hours)
        .u8(throttle)
        .u8(shutdown)
        .u16(0)
        .u32(stamp);
  }

  // As XML; the summary and this, with its first values, are the whole answer for one drive in state 4.
  std::string xml(const std::string &status_word = "Optimal") const {
    const auto attribute = [](const char *name, const std::string &value) {
      return std::string(name).append("=\"").append(value).append("\" ");
    };
    const auto hex = [](unsigned value) {
      char text[16];
      snprintf(text, sizeof text, "0x%x", value);
      return std::string(text);
    };
    return "<NVME-phy-drive " + attribute("controller-name", controller_name) + attribute("smbios-pcislotname", slot) +
           attribute("product-name", product_name) + attribute("status", status_word) +
           attribute("serial-number", serial) + attribute("firmware-version", firmware) + attribute("vendor", vendor) +
           attribute("vendor-id", hex(vendor_id)) + attribute("device-id", hex(device_id)) +
           attribute("subvendor-id", hex(subvendor_id)) + attribute("subdevice-id", hex(subdevice_id)) +
           attribute("temperature", std::to_string(temperature)) + attribute("status-description", description) +
           attribute("drive-life-used-percent", std::to_string(life_used)) +
           attribute("life-left-in-days", std::to_string(life_left)) +
           attribute("percent-power-on-hours", std::to_string(power_on_hours)) +
           attribute("performance-percent", std::to_string(performance)) +
           attribute("throttle-threshold", std::to_string(throttle)) +
           attribute("shutdown-threshold", std::to_string(shutdown)) + "/>";
  }
};

inline std::string controller_summary(int count, const std::string &state = "Main_Power") {
  return "<NVME-ctlr-summary count=\"" + std::to_string(count) + "\" state=\"" + state + "\" />";
}

inline std::string drive_summary(int count, const std::string &state = "Main_Power") {
  return "<NVME-phy-drive-summary count=\"" + std::to_string(count) + "\" state=\"" + state + "\" />";
}

inline Bytes nvme_controller_file(uint8_t state, const std::vector<NvmeController> &controllers) {
  Bytes file = Bytes().u8(state);
  for (const NvmeController &controller : controllers) file += controller.stored();
  return file;
}

inline Bytes nvme_drive_file(uint32_t announced, uint8_t state, const std::vector<NvmeDrive> &drives) {
  Bytes file = little_endian().u32(announced).u8(state);
  for (const NvmeDrive &drive : drives) file += drive.stored();
  return file;
}

inline Bytes nvme_drive_file(uint8_t state, const std::vector<NvmeDrive> &drives) {
  return nvme_drive_file(static_cast<uint32_t>(drives.size()), state, drives);
}

inline Bytes nvme_controller_image(uint8_t state, const std::vector<Bytes> &records) {
  Bytes image = little_endian().u8(state).u8(records.size()).u32(kNvmeControllerSize).fill(8, 0);
  for (const Bytes &record : records) image += record;
  return image;
}

inline Bytes nvme_drive_image(uint8_t state, const std::vector<Bytes> &records) {
  Bytes image = little_endian().u8(state).u8(1).u16(records.size()).u16(records.size()).u32(kNvmeDriveSize).fill(8, 0);
  for (const Bytes &record : records) image += record;
  return image;
}

}  // namespace tests
