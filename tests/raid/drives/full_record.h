// One physical drive record with a value of its own in every field, and what a dump makes of it.
#pragma once

#include <string>

#include "host/bytes.h"

namespace tests {

// No number is the same backwards, and most would come out negative if they were taken for signed ones.
inline Bytes full_drive_record(Bytes::Order order) {
  Bytes record(order);
  record
      .u8(129)                            // controller_index
      .u8(130)                            // slot_num
      .u8(131)                            // lsi_drive_num
      .u8(132)                            // power_state
      .u16(0x8131)                        // device_id
      .u16(0x8232)                        // enclosure_device_id
      .u32(0x83336373)                    // media_err_count
      .u32(0x84346474)                    // other_err_count
      .u32(0x85356575)                    // predictive_failure_count
      .u8(65)                             // disabled_for_removal
      .u16(0x8636)                        // block_size
      .u64(0x8737677700112201)            // raw_size
      .u64(0x8838687800112202)            // non_coerced_size
      .u64(0x8939697900112203)            // coerced_size
      .u8(133)                            // link_speed
      .u8(134)                            // device_type
      .u8(135)                            // interface_type
      .text("FM1200DX-0041", 17)          // product_id
      .text("FATHOM", 9)                  // vendor
      .text("F004", 5)                    // firmware
      .text("FX3L0A1B2C9", 21)            // serial_num
      .u8(136)                            // status
      .u8(0)                              // fault
      .u8(66)                             // online
      .u8(67)                             // temp_valid
      .u8(137)                            // temperature
      .u8(138)                            // rebuild_status
      .u8(0xFF)                           // rebuild_percent_complete
      .u32(0x8A3A6A7A)                    // rebuild_start_timestamp
      .u32(0x8B3B6B7B)                    // rebuild_end_timestamp
      .u8(139)                            // copyback_status
      .u8(0xFE)                           // copyback_percent_complete
      .u32(0x8C3C6C7C)                    // copyback_start_timestamp
      .u32(0x8D3D6D7D)                    // copyback_end_timestamp
      .u8(0)                              // boot_drive
      .u32(0x8E3E6E7E)                    // mod_timestamp
      .text("Fathom Storage FM1200", 97)  // product_id_v3
      .u8(140)                            // locator_state_v7
      .u8(141)                            // patrol_read_status
      .u8(0xFD)                           // patrol_read_percent_complete
      .u32(0x8F3F6F7F)                    // patrol_read_start_timestamp
      .u32(0x90407080)                    // patrol_read_end_timestamp
      .u8(142)                            // clear_status
      .u8(0xFC)                           // clear_percent_complete
      .u32(0x91417181)                    // clear_start_timestamp
      .u32(0x92427282)                    // clear_end_timestamp
      .u8(143)                            // erase_status
      .u8(100)                            // erase_percent_complete
      .u32(0x93437383)                    // erase_start_timestamp
      .u32(0x94447484)                    // erase_end_timestamp
      .u8(1)                              // enclosure_association
      .u8(0x50)
      .u8(0x06)
      .u8(0x05)
      .u8(0xB0)  // enclosure_logical_id
      .u8(0x0D)
      .u8(0x1E)
      .u8(0x2F)
      .u8(0xA3)
      .u64(0x5000C500A1B2C3D4)          // enclosure_sas_address[0]
      .u64(0x9000C500A1B2C3D5)          // enclosure_sas_address[1]
      .u16(0x9545)                      // physical_block_size
      .u8(68)                           // transport_ready
      .text("Online, spun up", 64)      // status_desc
      .u64(0x9646768600112204)          // powercycle_count
      .u64(0x9747778700112205)          // power_on_hours
      .u8(144)                          // percentage_life
      .u64(0x9848788800112206)          // wear_status_days
      .u8(0xA7)                         // pd_sed_state
      .text("Media error at 0x1f", 64)  // pd_error
      .u8(145)                          // extended_status
      .u8(146)                          // state
      .text("F004.210", 9);             // firmware_v37
  return record;
}

inline std::string full_drive_text() {
  return "\n\n\nPhysical Drive ===================**************===============\n\n\n"
         "PhyDrive Controller index = 129\n"
         "PhyDrive slot num = 130\n"
         "LSI Drive Num = 131\n"
         "Power State = 132 (0: Active, 1: Powersave, 2: Transitioning\n"
         "device_id = 33073\n"
         "enclosure_device_id = 33330\n"
         "Media Err Count = -2093784205\n"
         "Other Err Count = -2076941196\n"
         "Predictive Failure Count = -2060098187\n"
         "Disabled for removal = true\n"
         "Block Size = 34358\n"
         "Raw Size = -8703373994070302207\n"
         "Non-coerced size = -8631033821249068542\n"
         "Coerced Size = -8558693648427834877\n"
         "Enclosure Association = Direct Attached\n"
         "Enclosure Logical ID = 0x500605b00d1e2fa3\n"
         "Enclosure SAS Address[0] = 0x5000c500a1b2c3d4\n"
         "Enclosure SAS Address[1] = 0x9000c500a1b2c3d5\n"
         "Link speed = 133 (0: UnKnown, 1: 1.5GB, 2: 3GB, 3: 6GB, 4: 12GB)\n"
         "Power On Hours   = -7545931228930563579\n"
         "Powercycle Count = -7618271401751797244\n"
         "Percentage Life  = 144\n"
         "Wear Status Days = -7473591056109329914\n"
         "Status Desc      = Online, spun up\n"
         "Device type = 134 (0: disk 1: SSD)\n"
         "Interface Type = 135 (0: UNK, 1: Sata, 2: SAS)\n"
         "Product ID = FM1200DX-0041\n"
         "vendor = FATHOM\n"
         "Firmware = F004\n"
         "Serial Num = FX3L0A1B2C9\n"
         "Status = 136\n"
         "Fault = false\n"
         "Online = true\n"
         "Temp valid = true\n"
         "Temperature = 137\n"
         "rebuild_operation_progress status = 138\n"
         "rebuild_operation_progress percent complete = -1\n"
         "rebuild_operation_progress start timestamp = 0x8a3a6a7a\n"
         "rebuild_operation_progress end timestamp = 0x8b3b6b7b\n"
         "copyback_operation_progress status = 139\n"
         "copyback_operation_progress percent complete = -2\n"
         "copyback_operation_progress start timestamp = 0x8c3c6c7c\n"
         "copyback_operation_progress end timestamp = 0x8d3d6d7d\n"
         "patrol_read_operation_progress_v7 status = 141\n"
         "patrol_read_operation_progress_v7 percent complete = -3\n"
         "patrol_read_operation_progress_v7 start timestamp = 0x8f3f6f7f\n"
         "patrol_read_operation_progress_v7 end timestamp = 0x90407080\n"
         "clear_operation_progress_v7 status = 142\n"
         "clear_operation_progress_v7 percent complete = -4\n"
         "clear_operation_progress_v7 start timestamp = 0x91417181\n"
         "clear_operation_progress_v7 end timestamp = 0x92427282\n"
         "erase_operation_progress_v7 status = 143\n"
         "erase_operation_progress_v7 percent complete = 100\n"
         "erase_operation_progress_v7 start timestamp = 0x93437383\n"
         "erase_operation_progress_v7 end timestamp = 0x94447484\n"
         "Boot drive = false\n"
         "Transport Ready = true\n"
         "Mod timestamp = -1908511106\n"
         "product_id_v3 = Fathom Storage FM1200\n"
         "locator_state_v7 = 140\n"
         "Physical block Size = 38213\n"
         "PD SED state = 0xa7\n"
         "PD Error=   Media error at 0x1f\n"
         "Extended Status = 145\n"
         "State = 146\n"
         "firmware_v37 = F004.210\n";
}

}  // namespace tests
