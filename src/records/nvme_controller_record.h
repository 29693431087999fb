// The layout of an NVMe controller's or switch's record, in the order of its bytes. Dumps and XML follow from it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

// A PCIe switch says so by its type; the type of a plain controller is another.
inline constexpr OnlyIf kIsSwitch = {.field = "controller_type", .begins_with = "NVME-MSWITCH"};

inline constexpr auto kNvmeController = std::to_array<Field>({
    FIELD(NvmeCtlrInfo, controller_name, "controller-name: %s\n", {.xml = {"controller-name"}}),
    FIELD(NvmeCtlrInfo, mod_timestamp, "mod-timestamp: %d\n"),
    status(FIELD(NvmeCtlrInfo, status, "status: %s\n", {.words = kNvmeStatuses, .xml = {"status"}})),
    FIELD(NvmeCtlrInfo, drive_count, "drive-count: %d\n", {.xml = {"drive-count", XmlForm::kDecimal}}),
    FIELD(NvmeCtlrInfo, controller_type, "controller-type: %s\n", {.xml = {"controller-type"}}),
    FIELD(NvmeCtlrInfo, vendor_id, "vendor-id: %s\n", {.xml = {"vendor-id"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, product_id, "product-id: %s\n", {.xml = {"product-id"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, component_id, "component-id: %x\n",
          {.base = Base::kHexadecimal, .xml = {"component-id", XmlForm::kHexadecimal}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, product_revision, "product-revision: %s\n",
          {.xml = {"product-revision"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, p2p_vendor_id, "p2p-vendor-id: %x\n",
          {.base = Base::kHexadecimal, .xml = {"p2p-vendor-id", XmlForm::kHexadecimal}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, p2p_device_id, "p2p-device-id: %x\n",
          {.base = Base::kHexadecimal, .xml = {"p2p-device-id", XmlForm::kHexadecimal}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, running_firmware_version, "running-firmware-version: %s\n",
          {.xml = {"running-firmware-version"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, pending_firmware_version, "pending-firmware-version: %s\n",
          {.xml = {"pending-firmware-version"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, switch_temperature, "switch-temperature: %d\n",
          {.unit = Unit::kCelsius, .xml = {"switch-temperature", XmlForm::kDecimal}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, switch_status, "switch-status: %s\n", {.xml = {"switch-status"}, .only_if = kIsSwitch}),
    FIELD(NvmeCtlrInfo, link_status, "link-status: %s\n", {.xml = {"link-status"}, .only_if = kIsSwitch}),
});
static_assert(sizeof(NvmeCtlrInfo) == 262 && describes<NvmeCtlrInfo, kNvmeController>());
static_assert(sizeof(NvmeCtlrSummary) == 28);
static_assert(sizeof(NvmeCtlrImageHeader) == 14);

// What stands before the records in the store file.
struct MC_STORE_PACKED NvmeControllerFileHeader {
  uint8_t subsystem_state;
};

inline constexpr auto kNvmeControllerFileHeader = std::to_array<Field>({
    status(FIELD(NvmeControllerFileHeader, subsystem_state, "subsystem-state: %s\n", {.words = kNvmeStates})),
});
static_assert(describes<NvmeControllerFileHeader, kNvmeControllerFileHeader>());

inline constexpr auto kNvmeControllerIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(NvmeCtlrInfo, NvmeCtlrSummary, controller_name),
});

inline constexpr KindFacts kNvmeControllerFacts = {
    .name = "nvme-controllers",
    .lock_path = kNvmeLockPath,
    .store_path = kNvmeLockPath,
    .identity = kNvmeControllerIdentity,
    .gone = {"status", MC_NVME_DELETED},
    .greatest_count = std::numeric_limits<decltype(NvmeCtlrImageHeader::count)>::max(),
};
static_assert(fits_table<kNvmeController, kNvmeControllerFacts>());

}  // namespace mcserver::records
