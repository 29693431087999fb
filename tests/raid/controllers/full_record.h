// One controller record with a value of its own in every field, and what a dump makes of it.
#pragma once

#include <string>

#include "host/bytes.h"

namespace tests {

// No number is the same backwards, and most would come out negative if they were taken for signed ones. A flag is any
// byte but 0; the reserved block holds every byte once.
inline Bytes full_controller_record(Bytes::Order order) {
  Bytes record(order);
  record
      .u8(129)                                                           // index
      .text("SLOT-7", 16)                                                // controller
      .text("PCI-3", 6)                                                  // smbios_pcislotname
      .text("Fathom R9480 RAID Adapter", 81)                             // product_name
      .u8(1)                                                             // is_supported
      .u8(130)                                                           // reason_not_supported
      .u8(131)                                                           // controller_status
      .text("FW20K81377", 31)                                            // serial_number
      .text("71.20.0-0015", 97)                                          // firmware_package_build
      .text("Fathom Storage", 20)                                        // vendor
      .u16(0x8131)                                                       // vendor_id
      .u16(0x8232)                                                       // device_id
      .u16(0x8333)                                                       // subvendor_id
      .u16(0x8434)                                                       // subdevice_id
      .text("C1", 3)                                                     // chip_revision
      .text("11/23/2024", 11)                                            // mfg_date
      .text("02/14/2025", 11)                                            // mfg_rework_date
      .text("00013", 9)                                                  // mfg_revision_num
      .text("6.36.00.3", 33)                                             // bios_version
      .text("4.680.00-8527", 33)                                         // firmware_version
      .text("05.07-00:#1", 33)                                           // preboot_cli_version
      .text("6.1-75-e_75", 33)                                           // webbios_version
      .text("3.1705.00-0014", 33)                                        // nvdata_version
      .text("3.07.00.00-0003", 33)                                       // boot_block_version
      .text("07.26.40.219", 33)                                          // boot_version
      .text("6.37.00.1", 33)                                             // pending_bios_version
      .text("4.710.01-8601", 33)                                         // pending_firmware_version
      .text("05.08-00:#2", 33)                                           // pending_preboot_cli_version
      .text("6.2-80-e_80", 33)                                           // pending_webbios_version
      .text("3.1801.00-0021", 33)                                        // pending_nvdata_version
      .text("3.08.00.00-0005", 33)                                       // pending_boot_block_version
      .text("07.27.10.101", 33)                                          // pending_boot_version
      .u16(0x8535)                                                       // predictive_fail_poll_interval
      .u8(132)                                                           // rebuild_rate
      .u8(133)                                                           // patrol_read_rate
      .u8(134)                                                           // consistency_check_rate
      .u8(135)                                                           // reconstruction_rate
      .u8(136)                                                           // cache_flush_interval
      .u16(0x8636)                                                       // spinup_drive_count
      .u16(0x8737)                                                       // spinup_delay
      .u8(137)                                                           // coercion_mode
      .u8(65)                                                            // cluster_enable
      .u16(0x8838)                                                       // ecc_bucket_leak_rate
      .u8(66)                                                            // expose_enclosure_devices
      .u8(67)                                                            // maintain_pd_fail_history
      .u8(68)                                                            // maintain_pd_fail_history_2
      .u8(69)                                                            // enable_copyback_to_ssd_on_smart_error
      .u8(127)                                                           // disable_ncq
      .u8(70)                                                            // spin_down_unconfigured
      .u8(71)                                                            // enable_ssd_patrol_read
      .u8(72)                                                            // auto_enhanced_import
      .u32(0x9121B151)                                                   // raid_levels_supported
      .u8(73)                                                            // nvram_present
      .u8(74)                                                            // serial_debugger_present
      .u8(75)                                                            // memory_present
      .u8(76)                                                            // flash_present
      .u64(0x0011223344556677)                                           // memory_size
      .u64(0x0000008899AABBCC)                                           // cache_memory_size
      .u8(138)                                                           // backend_port_count
      .u16(0x8939)                                                       // memory_correctable_errors
      .u16(0x8A3A)                                                       // memory_uncorrectable_errors
      .u8(77)                                                            // controller_temperature_sensor_present
      .u8(78)                                                            // roc_temperature_sensor_present
      .u8(79)                                                            // drive_temperature_supported
      .u8(139)                                                           // controller_temperature
      .u8(140)                                                           // roc_temperature
      .u8(141)                                                           // patrol_read_operation_status
      .u8(0xD6)                                                          // patrol_read_percent_complete: -42
      .u32(0x9222B252)                                                   // patrol_read_start_timestamp
      .u32(0x9323B353)                                                   // patrol_read_end_timestamp
      .u8(80)                                                            // has_sas_expander
      .u32(0xABCDEF11)                                                   // mod_timestamp: -1412567279
      .u8(142)                                                           // sub_oem
      .u8(143)                                                           // pinned_cache_state
      .u8(144)                                                           // controller_type
      .u64(0x9324B546D768E90A)                                           // supported_strip_sizes
      .u64(0x9425B647D869EA0B)                                           // default_strip_size
      .text("PCIe-3-riser-1", 16)                                        // smbios_pcislotname_ext
      .u64(0x9526B748D96AEB0C)                                           // supported_ctlr_ops
      .u64(0x9627B849DA6BEC0D)                                           // supported_phys_ops
      .u64(0x9728B94ADB6CED0E)                                           // supported_virt_ops
      .u16(0x8B3B)                                                       // supported_bbu_ops
      .u64(0x9829BA4BDC6DEE0F)                                           // valid_controller_attrs
      .text("Needs attention", 64)                                       // controller_status_description
      .u8(145)                                                           // drive_life_used_percent
      .u8(146);                                                          // controller_sed_status
  for (uint8_t byte = 0; record.size() < 1222; ++byte) record.u8(byte);  // reserved
  record
      .u8(147)                          // performance_percent
      .text("Cache module failed", 64)  // controller_error
      .u8(148)                          // jbod_mode
      .u32(0x01A20304)                  // max_virtual_drives_per_controller: 27394820
      .u16(0x8C3C);                     // life_left_in_days
  return record;
}

inline std::string full_controller_text() {
  return "controller: SLOT-7\n"
         "smbios_pcislotname: PCI-3\n"
         "index: 129\n"
         "product-name: Fathom R9480 RAID Adapter\n"
         "is-supported: true\n"
         "reason-not-supported: 130\n"
         "controller-status: 131 (0:Optimal, 1:Unresponsive)\n"
         "serial-number: FW20K81377\n"
         "firmware-package-build: 71.20.0-0015\n"
         "vendor: Fathom Storage\n"
         "vendor-id: 0x8131\n"
         "device-id: 0x8232\n"
         "subvendor-id: 0x8333\n"
         "subdevice-id: 0x8434\n"
         "chip-revision: C1\n"
         "mfg-date: 11/23/2024\n"
         "mfg-rework-date: 02/14/2025\n"
         "mfg-revision-num: 00013\n"
         "bios-version: 6.36.00.3\n"
         "firmware-version: 4.680.00-8527\n"
         "preboot-cli-version: 05.07-00:#1\n"
         "webbios-version: 6.1-75-e_75\n"
         "nvdata-version: 3.1705.00-0014\n"
         "boot-block-version: 3.07.00.00-0003\n"
         "boot-version: 07.26.40.219\n"
         "pending-bios-version: 6.37.00.1\n"
         "pending-firmware-version: 4.710.01-8601\n"
         "pending-preboot-cli-version: 05.08-00:#2\n"
         "pending-webbios-version: 6.2-80-e_80\n"
         "pending-nvdata-version: 3.1801.00-0021\n"
         "pending-boot-block-version: 3.08.00.00-0005\n"
         "pending-boot-version: 07.27.10.101\n"
         "predictive-fail-poll-interval: 34101 sec\n"
         "rebuild-rate: 132\n"
         "patrol-read-rate: 133\n"
         "consistency-check-rate: 134\n"
         "reconstruction-rate: 135\n"
         "cache-flush-interval: 136\n"
         "spinup-drive-count: 34358\n"
         "spinup-delay: 34615\n"
         "coercion-mode: 137 (0: None, 1: 128MB, 2: 1GB)\n"
         "cluster-enable: true\n"
         "ecc-bucket-leak-rate: 34872\n"
         "expose-enclosure-devices: true\n"
         "maintain-pd-fail-history: true\n"
         "maintain-pd-fail-history: true\n"
         "enable-copyback-to-ssd-on-smart-error: true\n"
         "disable-ncq: false\n"
         "spin-down-unconfigured: true\n"
         "enable-ssd-patrol-read: true\n"
         "auto-enhanced-import: true\n"
         "raid_levels_supported: 0x9121b151\n"
         "nvram-present: true\n"
         "serial-debugger-present: true\n"
         "memory-present: true\n"
         "flash-present: true\n"
         "memory-size: 4822678189205111 bytes\n"
         "cache-memory-size: 586693655500 bytes\n"
         "backend-port-count: 138\n"
         "memory-correctable-errors: 35129\n"
         "memory-uncorrectable-errors: 35386\n"
         "controller-temperature-sensor-present: true\n"
         "ROC-temperature-sensor-present: true\n"
         "drive-temperature-supported: true\n"
         "controller-temperature: 139\n"
         "roc-temperature: 140\n"
         "patrol-read-operation-status: 141 (0:unknown, 1:success, 2:active, 3:aborted, 4:suspended, 5:failed\n"
         "patrol-read-percent-complete: -42\n"
         "patrol-read-start-timestamp: 0x9222b252\n"
         "patrol-read-end-timestamp: 0x9323b353\n"
         "has-sas-expander: true\n"
         "Mod timestamp = -1412567279\n"
         "subOEM_v8: 142\n"
         "pinned-cache_state_v8: 143 (0:unknown, 1:pinned-cache-present true, 2:pinned-cache-present false)\n"
         "controller_type_v9: 144 \n"
         "supported_strip_sizes: 9324b546d768e90a \n"
         "default_strip_size: 9425b647d869ea0b \n"
         "smbios_pcislotname_ext: 'PCIe-3-riser-1' \n"
         "supported_ctlr_ops: 0x9526b748d96aeb0c\n"
         "supported_phys_ops: 0x9627b849da6bec0d\n"
         "supported_virt_ops: 0x9728b94adb6ced0e\n"
         "supported_bbu_ops: 0x8b3b\n"
         "valid controller attrs: 0x9829ba4bdc6dee0f\n"
         "controller-status-description: Needs attention\n"
         "drive-life-used-percent: 145\n"
         "controller-sed-status: 0x92\n"
         "performance-percent: 147\n"
         "controller-error_v22: Cache module failed\n"
         "JBOD Mode: 148\n"
         "Max Virtual Drives per Controller = 27394820\n"
         "life-left-in-days:35900\n";
}

}  // namespace tests
