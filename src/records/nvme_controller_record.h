// The layout of an NVMe controller's or switch's record, in the order of its bytes. Dumps and XML follow from it.
#pragma once

#include "mcserver_storage.h"
#include "shared/field.h"

namespace mcserver::records {

inline constexpr auto kNvmeController = std::to_array<Field>({
    FIELD(NvmeCtlrInfo, controller_name, "controller-name: %s\n"),
    FIELD(NvmeCtlrInfo, mod_timestamp, "mod-timestamp: %d\n"),
    status(FIELD(NvmeCtlrInfo, status, "status: %s\n")),
    FIELD(NvmeCtlrInfo, drive_count, "drive-count: %d\n"),
    FIELD(NvmeCtlrInfo, controller_type, "controller-type: %s\n"),
    FIELD(NvmeCtlrInfo, vendor_id, "vendor-id: %s\n"),
    FIELD(NvmeCtlrInfo, product_id, "product-id: %s\n"),
    FIELD(NvmeCtlrInfo, component_id, "component-id: %x\n"),
    FIELD(NvmeCtlrInfo, product_revision, "product-revision: %s\n"),
    FIELD(NvmeCtlrInfo, p2p_vendor_id, "p2p-vendor-id: %x\n"),
    FIELD(NvmeCtlrInfo, p2p_device_id, "p2p-device-id: %x\n"),
    FIELD(NvmeCtlrInfo, running_firmware_version, "running-firmware-version: %s\n"),
    FIELD(NvmeCtlrInfo, pending_firmware_version, "pending-firmware-version: %s\n"),
    FIELD(NvmeCtlrInfo, switch_temperature, "switch-temperature: %d\n"),
    FIELD(NvmeCtlrInfo, switch_status, "switch-status: %s\n"),
    FIELD(NvmeCtlrInfo, link_status, "link-status: %s\n"),
});
static_assert(sizeof(NvmeCtlrInfo) == 262 && describes<NvmeCtlrInfo>(kNvmeController));
static_assert(sizeof(NvmeCtlrSummary) == 28);
static_assert(sizeof(NvmeCtlrImageHeader) == 14);

// What stands before the records in the store file.
struct MC_STORE_PACKED NvmeControllerFileHeader {
  uint8_t subsystem_state;
};

inline constexpr auto kNvmeControllerFileHeader = std::to_array<Field>({
    status(FIELD(NvmeControllerFileHeader, subsystem_state, "subsystem-state: %s\n")),
});
static_assert(describes<NvmeControllerFileHeader>(kNvmeControllerFileHeader));

}  // namespace mcserver::records
