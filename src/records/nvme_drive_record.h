// The layout of an NVMe drive's record, in the order of its bytes. Dumps and XML follow from it.
#pragma once

#include "mcserver_storage.h"
#include "shared/field.h"

namespace mcserver::records {

inline constexpr auto kNvmeDrive = std::to_array<Field>({
    FIELD(NvmePhyDriveInfo, smbios_pcislotname, "smbios-pcislotname: %s\n"),
    FIELD(NvmePhyDriveInfo, controller_name, "controller-name: %s\n"),
    status(FIELD(NvmePhyDriveInfo, status, "status: %s\n")),
    FIELD(NvmePhyDriveInfo, product_name, "product-name: %s\n"),
    FIELD(NvmePhyDriveInfo, serial_number, "serial-number: %s\n"),
    FIELD(NvmePhyDriveInfo, firmware_version, "firmware-version: %s\n"),
    FIELD(NvmePhyDriveInfo, vendor, "vendor: %s\n"),
    FIELD(NvmePhyDriveInfo, vendor_id, "vendor-id: 0x%x\n"),
    FIELD(NvmePhyDriveInfo, device_id, "device-id: 0x%x\n"),
    FIELD(NvmePhyDriveInfo, subvendor_id, "subvendor-id: 0x%x\n"),
    FIELD(NvmePhyDriveInfo, subdevice_id, "subdevice-id: 0x%x\n"),
    FIELD(NvmePhyDriveInfo, temperature, "temperature: %d\n"),
    FIELD(NvmePhyDriveInfo, status_description, "status-description: %s\n"),
    FIELD(NvmePhyDriveInfo, drive_life_used_percent, "drive-life-used-percent: %d\n"),
    FIELD(NvmePhyDriveInfo, life_left_in_days, "life-left-in-days: %d\n"),
    FIELD(NvmePhyDriveInfo, performance_percent, "performance-percent: %d\n"),
    FIELD(NvmePhyDriveInfo, percent_power_on_hours, "percent-power-on-hours: %d\n"),
    FIELD(NvmePhyDriveInfo, throttle_threshold, "throttle-threshold: %d\n"),
    FIELD(NvmePhyDriveInfo, shutdown_threshold, "shutdown-threshold: %d\n"),
    FIELD(NvmePhyDriveInfo, reserved, kUnprinted),
    FIELD(NvmePhyDriveInfo, mod_timestamp, "mod-timestamp: %d\n\n"),
});
static_assert(sizeof(NvmePhyDriveInfo) == 356 && describes<NvmePhyDriveInfo>(kNvmeDrive));
static_assert(sizeof(NvmeDriveSummary) == 84);
static_assert(sizeof(NvmeDriveImageHeader) == 18);

// What stands before the records in the store file. The collector's own names: an inventory in JSON has them too.
struct MC_STORE_PACKED NvmeDriveFileHeader {
  uint32_t noofDrives;
  uint8_t nvme_subsystem_info;
};

inline constexpr auto kNvmeDriveFileHeader = std::to_array<Field>({
    FIELD(NvmeDriveFileHeader, noofDrives, "noofDrives: %d\n"),
    status(FIELD(NvmeDriveFileHeader, nvme_subsystem_info, "subsystem-state: %s\n")),
});
static_assert(describes<NvmeDriveFileHeader>(kNvmeDriveFileHeader));

}  // namespace mcserver::records
