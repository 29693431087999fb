// The controller record's layout, in the order of its bytes. Byte order, dumps and the tool's columns follow from it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kController = std::to_array<Field>({
    FIELD(StorCtlrInfo, index, "index: %d\n"),
    FIELD(StorCtlrInfo, controller, "controller: %s\n"),
    FIELD(StorCtlrInfo, smbios_pcislotname, "smbios_pcislotname: %s\n"),
    FIELD(StorCtlrInfo, product_name, "product-name: %s\n"),
    flag(FIELD(StorCtlrInfo, is_supported, "is-supported: %s\n")),
    FIELD(StorCtlrInfo, reason_not_supported, "reason-not-supported: %d\n"),
    FIELD(StorCtlrInfo, controller_status, "controller-status: %d (0:Optimal, 1:Unresponsive)\n",
          {.words = kControllerStatuses}),
    FIELD(StorCtlrInfo, serial_number, "serial-number: %s\n"),
    FIELD(StorCtlrInfo, firmware_package_build, "firmware-package-build: %s\n"),
    FIELD(StorCtlrInfo, vendor, "vendor: %s\n"),
    FIELD(StorCtlrInfo, vendor_id, "vendor-id: 0x%x\n", {.base = Base::kHexadecimal}),
    FIELD(StorCtlrInfo, device_id, "device-id: 0x%x\n", {.base = Base::kHexadecimal}),
    FIELD(StorCtlrInfo, subvendor_id, "subvendor-id: 0x%x\n", {.base = Base::kHexadecimal}),
    FIELD(StorCtlrInfo, subdevice_id, "subdevice-id: 0x%x\n", {.base = Base::kHexadecimal}),
    FIELD(StorCtlrInfo, chip_revision, "chip-revision: %s\n"),
    FIELD(StorCtlrInfo, mfg_date, "mfg-date: %s\n"),
    FIELD(StorCtlrInfo, mfg_rework_date, "mfg-rework-date: %s\n"),
    FIELD(StorCtlrInfo, mfg_revision_num, "mfg-revision-num: %s\n"),
    FIELD(StorCtlrInfo, bios_version, "bios-version: %s\n"),
    FIELD(StorCtlrInfo, firmware_version, "firmware-version: %s\n"),
    FIELD(StorCtlrInfo, preboot_cli_version, "preboot-cli-version: %s\n"),
    FIELD(StorCtlrInfo, webbios_version, "webbios-version: %s\n"),
    FIELD(StorCtlrInfo, nvdata_version, "nvdata-version: %s\n"),
    FIELD(StorCtlrInfo, boot_block_version, "boot-block-version: %s\n"),
    FIELD(StorCtlrInfo, boot_version, "boot-version: %s\n"),
    FIELD(StorCtlrInfo, pending_bios_version, "pending-bios-version: %s\n"),
    FIELD(StorCtlrInfo, pending_firmware_version, "pending-firmware-version: %s\n"),
    FIELD(StorCtlrInfo, pending_preboot_cli_version, "pending-preboot-cli-version: %s\n"),
    FIELD(StorCtlrInfo, pending_webbios_version, "pending-webbios-version: %s\n"),
    FIELD(StorCtlrInfo, pending_nvdata_version, "pending-nvdata-version: %s\n"),
    FIELD(StorCtlrInfo, pending_boot_block_version, "pending-boot-block-version: %s\n"),
    FIELD(StorCtlrInfo, pending_boot_version, "pending-boot-version: %s\n"),
    FIELD(StorCtlrInfo, predictive_fail_poll_interval, "predictive-fail-poll-interval: %d sec\n",
          {.unit = Unit::kSeconds}),
    FIELD(StorCtlrInfo, rebuild_rate, "rebuild-rate: %d\n"),
    FIELD(StorCtlrInfo, patrol_read_rate, "patrol-read-rate: %d\n"),
    FIELD(StorCtlrInfo, consistency_check_rate, "consistency-check-rate: %d\n"),
    FIELD(StorCtlrInfo, reconstruction_rate, "reconstruction-rate: %d\n"),
    FIELD(StorCtlrInfo, cache_flush_interval, "cache-flush-interval: %d\n"),
    FIELD(StorCtlrInfo, spinup_drive_count, "spinup-drive-count: %d\n"),
    FIELD(StorCtlrInfo, spinup_delay, "spinup-delay: %d\n"),
    FIELD(StorCtlrInfo, coercion_mode, "coercion-mode: %d (0: None, 1: 128MB, 2: 1GB)\n", {.words = kCoercionModes}),
    flag(FIELD(StorCtlrInfo, cluster_enable, "cluster-enable: %s\n")),
    FIELD(StorCtlrInfo, ecc_bucket_leak_rate, "ecc-bucket-leak-rate: %d\n"),
    flag(FIELD(StorCtlrInfo, expose_enclosure_devices, "expose-enclosure-devices: %s\n")),
    flag(FIELD(StorCtlrInfo, maintain_pd_fail_history, "maintain-pd-fail-history: %s\n")),
    flag(FIELD(StorCtlrInfo, maintain_pd_fail_history_2, "maintain-pd-fail-history: %s\n")),
    flag(FIELD(StorCtlrInfo, enable_copyback_to_ssd_on_smart_error, "enable-copyback-to-ssd-on-smart-error: %s\n")),
    inverted_flag(FIELD(StorCtlrInfo, disable_ncq, "disable-ncq: %s\n")),
    flag(FIELD(StorCtlrInfo, spin_down_unconfigured, "spin-down-unconfigured: %s\n")),
    flag(FIELD(StorCtlrInfo, enable_ssd_patrol_read, "enable-ssd-patrol-read: %s\n")),
    flag(FIELD(StorCtlrInfo, auto_enhanced_import, "auto-enhanced-import: %s\n")),
    FIELD(StorCtlrInfo, raid_levels_supported, "raid_levels_supported: 0x%x\n", {.base = Base::kBitSet}),
    flag(FIELD(StorCtlrInfo, nvram_present, "nvram-present: %s\n")),
    flag(FIELD(StorCtlrInfo, serial_debugger_present, "serial-debugger-present: %s\n")),
    flag(FIELD(StorCtlrInfo, memory_present, "memory-present: %s\n")),
    flag(FIELD(StorCtlrInfo, flash_present, "flash-present: %s\n")),
    FIELD(StorCtlrInfo, memory_size, "memory-size: %lld bytes\n", {.unit = Unit::kBytes}),
    FIELD(StorCtlrInfo, cache_memory_size, "cache-memory-size: %lld bytes\n", {.unit = Unit::kBytes}),
    FIELD(StorCtlrInfo, backend_port_count, "backend-port-count: %d\n"),
    FIELD(StorCtlrInfo, memory_correctable_errors, "memory-correctable-errors: %d\n"),
    FIELD(StorCtlrInfo, memory_uncorrectable_errors, "memory-uncorrectable-errors: %d\n"),
    flag(FIELD(StorCtlrInfo, controller_temperature_sensor_present, "controller-temperature-sensor-present: %s\n")),
    flag(FIELD(StorCtlrInfo, roc_temperature_sensor_present, "ROC-temperature-sensor-present: %s\n")),
    flag(FIELD(StorCtlrInfo, drive_temperature_supported, "drive-temperature-supported: %s\n")),
    FIELD(StorCtlrInfo, controller_temperature, "controller-temperature: %d\n",
          {.unit = Unit::kCelsius, .only_if = {"controller_temperature_sensor_present"}}),
    FIELD(StorCtlrInfo, roc_temperature, "roc-temperature: %d\n",
          {.unit = Unit::kCelsius, .only_if = {"roc_temperature_sensor_present"}}),
    FIELD(StorCtlrInfo, patrol_read_operation_status,
          "patrol-read-operation-status: %d (0:unknown, 1:success, 2:active, 3:aborted, 4:suspended, 5:failed\n",
          {.words = kOperationStates}),
    FIELD(StorCtlrInfo, patrol_read_percent_complete, "patrol-read-percent-complete: %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorCtlrInfo, patrol_read_start_timestamp, "patrol-read-start-timestamp: 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorCtlrInfo, patrol_read_end_timestamp, "patrol-read-end-timestamp: 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    flag(FIELD(StorCtlrInfo, has_sas_expander, "has-sas-expander: %s\n")),
    FIELD(StorCtlrInfo, mod_timestamp, "Mod timestamp = %d\n"),
    FIELD(StorCtlrInfo, sub_oem, "subOEM_v8: %d\n"),
    FIELD(StorCtlrInfo, pinned_cache_state,
          "pinned-cache_state_v8: %d (0:unknown, 1:pinned-cache-present true, 2:pinned-cache-present false)\n",
          {.words = kPinnedCacheStates}),
    FIELD(StorCtlrInfo, controller_type, "controller_type_v9: %d \n"),
    FIELD(StorCtlrInfo, supported_strip_sizes, "supported_strip_sizes: %llx \n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, default_strip_size, "default_strip_size: %llx \n", {.base = Base::kHexadecimal}),
    FIELD(StorCtlrInfo, smbios_pcislotname_ext, "smbios_pcislotname_ext: '%s' \n"),
    FIELD(StorCtlrInfo, supported_ctlr_ops, "supported_ctlr_ops: 0x%llx\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, supported_phys_ops, "supported_phys_ops: 0x%llx\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, supported_virt_ops, "supported_virt_ops: 0x%llx\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, supported_bbu_ops, "supported_bbu_ops: 0x%x\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, valid_controller_attrs, "valid controller attrs: 0x%llx\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, controller_status_description, "controller-status-description: %s\n"),
    FIELD(StorCtlrInfo, drive_life_used_percent, "drive-life-used-percent: %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorCtlrInfo, controller_sed_status, "controller-sed-status: 0x%x\n", {.base = Base::kBitSet}),
    FIELD(StorCtlrInfo, reserved, kUnprinted),
    FIELD(StorCtlrInfo, performance_percent, "performance-percent: %d\n", {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorCtlrInfo, controller_error, "controller-error_v22: %s\n"),
    FIELD(StorCtlrInfo, jbod_mode, "JBOD Mode: %d\n"),
    FIELD(StorCtlrInfo, max_virtual_drives_per_controller, "Max Virtual Drives per Controller = %d\n"),
    FIELD(StorCtlrInfo, life_left_in_days, "life-left-in-days:%d\n", {.unit = Unit::kDays}),
});
static_assert(sizeof(StorCtlrInfo) == 1294 && describes<StorCtlrInfo, kController>());
static_assert(sizeof(CtlrSummary) == 64);

// What stands before the records in the store file.
struct MC_STORE_PACKED ControllerFileHeader {
  uint8_t subsystem_state;
};

inline constexpr auto kControllerFileHeader = std::to_array<Field>({
    FIELD(ControllerFileHeader, subsystem_state, "subsystem-state: %d\n", {.words = kSubsystemStates}),
});
static_assert(describes<ControllerFileHeader, kControllerFileHeader>());

inline constexpr auto kControllerIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(StorCtlrInfo, CtlrSummary, index),
    IDENTITY_MEMBER(StorCtlrInfo, CtlrSummary, serial_number),
});

inline constexpr KindFacts kControllerFacts = {
    .name = "controllers",
    .lock_path = kRaidLockPath,
    .store_path = kRaidLockPath,
    .identity = kControllerIdentity,
    .gone = {"controller_status", MC_STORE_CONTROLLER_GONE},
    .greatest_count = std::numeric_limits<decltype(StoreReplyHeader::count)>::max(),
};
static_assert(fits_table<kController, kControllerFacts>());

}  // namespace mcserver::records
