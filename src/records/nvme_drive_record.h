// The layout of an NVMe drive's record, in the order of its bytes. Dumps and XML follow from it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kNvmeDrive = std::to_array<Field>({
    FIELD(NvmePhyDriveInfo, smbios_pcislotname, "smbios-pcislotname: %s\n", {.xml = {"smbios-pcislotname"}}),
    FIELD(NvmePhyDriveInfo, controller_name, "controller-name: %s\n", {.xml = {"controller-name"}}),
    status(FIELD(NvmePhyDriveInfo, status, "status: %s\n", {.words = kNvmeStatuses, .xml = {"status"}})),
    FIELD(NvmePhyDriveInfo, product_name, "product-name: %s\n", {.xml = {"product-name"}}),
    FIELD(NvmePhyDriveInfo, serial_number, "serial-number: %s\n", {.xml = {"serial-number"}}),
    FIELD(NvmePhyDriveInfo, firmware_version, "firmware-version: %s\n", {.xml = {"firmware-version"}}),
    FIELD(NvmePhyDriveInfo, vendor, "vendor: %s\n", {.xml = {"vendor"}}),
    FIELD(NvmePhyDriveInfo, vendor_id, "vendor-id: 0x%x\n",
          {.base = Base::kHexadecimal, .xml = {"vendor-id", XmlForm::kPrefixedHexadecimal}}),
    FIELD(NvmePhyDriveInfo, device_id, "device-id: 0x%x\n",
          {.base = Base::kHexadecimal, .xml = {"device-id", XmlForm::kPrefixedHexadecimal}}),
    FIELD(NvmePhyDriveInfo, subvendor_id, "subvendor-id: 0x%x\n",
          {.base = Base::kHexadecimal, .xml = {"subvendor-id", XmlForm::kPrefixedHexadecimal}}),
    FIELD(NvmePhyDriveInfo, subdevice_id, "subdevice-id: 0x%x\n",
          {.base = Base::kHexadecimal, .xml = {"subdevice-id", XmlForm::kPrefixedHexadecimal}}),
    FIELD(NvmePhyDriveInfo, temperature, "temperature: %d\n",
          {.unit = Unit::kCelsius, .xml = {"temperature", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, status_description, "status-description: %s\n", {.xml = {"status-description"}}),
    FIELD(NvmePhyDriveInfo, drive_life_used_percent, "drive-life-used-percent: %d\n",
          {.unit = Unit::kPercent, .none = {255}, .xml = {"drive-life-used-percent", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, life_left_in_days, "life-left-in-days: %d\n",
          {.unit = Unit::kDays, .xml = {"life-left-in-days", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, performance_percent, "performance-percent: %d\n",
          {.unit = Unit::kPercent, .none = {255}, .xml = {"performance-percent", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, percent_power_on_hours, "percent-power-on-hours: %d\n",
          {.unit = Unit::kPercent, .none = {255}, .xml = {"percent-power-on-hours", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, throttle_threshold, "throttle-threshold: %d\n",
          {.unit = Unit::kCelsius, .none = {0, 255}, .xml = {"throttle-threshold", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, shutdown_threshold, "shutdown-threshold: %d\n",
          {.unit = Unit::kCelsius, .none = {0, 255}, .xml = {"shutdown-threshold", XmlForm::kDecimal}}),
    FIELD(NvmePhyDriveInfo, reserved, kUnprinted),
    FIELD(NvmePhyDriveInfo, mod_timestamp, "mod-timestamp: %d\n\n"),
});
static_assert(sizeof(NvmePhyDriveInfo) == 356 && describes<NvmePhyDriveInfo, kNvmeDrive>());
static_assert(sizeof(NvmeDriveSummary) == 84);
static_assert(sizeof(NvmeDriveImageHeader) == 18);

// What stands before the records in the store file. The collector's own names.
struct MC_STORE_PACKED NvmeDriveFileHeader {
  uint32_t noofDrives;
  uint8_t nvme_subsystem_info;
};

inline constexpr auto kNvmeDriveFileHeader = std::to_array<Field>({
    FIELD(NvmeDriveFileHeader, noofDrives, "noofDrives: %d\n"),
    status(FIELD(NvmeDriveFileHeader, nvme_subsystem_info, "subsystem-state: %s\n", {.words = kNvmeStates})),
});
static_assert(describes<NvmeDriveFileHeader, kNvmeDriveFileHeader>());

inline constexpr auto kNvmeDriveIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(NvmePhyDriveInfo, NvmeDriveSummary, smbios_pcislotname),
    IDENTITY_MEMBER(NvmePhyDriveInfo, NvmeDriveSummary, serial_number),
});

inline constexpr KindFacts kNvmeDriveFacts = {
    .name = "nvme-drives",
    .lock_path = kNvmeLockPath,
    .store_path = "/var/nvmephydrive_info",
    .identity = kNvmeDriveIdentity,
    .gone = {"status", MC_NVME_DELETED},
    .greatest_count = std::numeric_limits<decltype(NvmeDriveImageHeader::count)>::max(),
};
static_assert(fits_table<kNvmeDrive, kNvmeDriveFacts>());

}  // namespace mcserver::records
