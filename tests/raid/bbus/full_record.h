// A battery and a capacitor with a value of their own in every field, and what a dump makes of them.
#pragma once

#include <string>

#include "host/bytes.h"

namespace tests {

// What both have. No number is the same backwards, and most would come out negative if they were taken for signed ones,
// or the other way round. A flag is any byte but 0.
inline Bytes full_bbu_start(Bytes::Order order, uint8_t capacitor) {
  return Bytes(order)
      .u8(129)                 // controller_index
      .u8(130)                 // change_id
      .u8(131)                 // status
      .u8(132)                 // type
      .text("BBU-A7", 8)       // device_name
      .text("Halvorsen", 12)   // manufacturer
      .text("2023/07/19", 11)  // mfg_date
      .text("M2.04-b", 8)      // module_version
      .u16(0x8131)             // serial_number
      .u8(133)                 // charging_state
      .u16(0x8232)             // design_voltage
      .u16(0x8333)             // voltage
      .u16(0x8434)             // current
      .u8(134)                 // temperature
      .u8(65)                  // voltage_low
      .u8(66)                  // temp_high
      .u8(67)                  // learn_cycle_transparent
      .u8(135)                 // learn_mode
      .u8(136)                 // learn_cycle_status
      .u8(0xD6)                // learn_cycle_percent_complete: -42
      .u32(0x9121B151)         // learn_cycle_start_timestamp
      .u32(0x9222B252)         // learn_cycle_end_timestamp
      .u8(68)                  // learn_cycle_requested
      .u32(0x9323B353)         // next_learn_cycle: -1826376877
      .u8(capacitor);          // capacitor
}

inline Bytes full_bbu_end(Bytes::Order order) {
  return Bytes(order)
      .u32(0xABCDEF11)               // modified_timestamp
      .text("Collected vendor", 20)  // tfm_vendor
      .text("Collected model", 20)   // tfm_model
      .text("Collected no.", 16)     // tfm_serial_num
      .text("Collected rev.", 16);   // tfm_revision
}

inline Bytes full_battery_record(Bytes::Order order) {
  return full_bbu_start(order, 0) +
         Bytes(order)
             .u8(137)        // retention_time
             .u8(138)        // relative_state_of_charge
             .u8(139)        // absolute_state_of_charge
             .u8(140)        // expected_margin_of_error
             .u16(0x8535)    // design_capacity
             .u16(0x8636)    // full_capacity
             .u8(0x37)       // remaining_capacity: 0x8737, whatever the order
             .u8(0x87)       //
             .u16(0x8838) +  // completed_charge_cycles
         full_bbu_end(order);
}

inline Bytes full_capacitor_record(Bytes::Order order) {
  return full_bbu_start(order, 69) +
         Bytes(order)
             .u8(141)                       // capacitance
             .u16(0x8939)                   // design_capacity
             .u16(0x8A3A)                   // pack_energy
             .u8(142) +                     // remaining_pool_space
         Bytes::hex("71 72 73 74 75 76") +  // not used
         full_bbu_end(order);
}

// 74 bytes.
inline std::string bbu_dump_header() {
  return "\n\n\nBattery Backup Unit ===================**************===============\n\n\n";
}

inline std::string full_bbu_start_text() {
  return bbu_dump_header() +
         "Controller Index       = 129\n"
         "Change ID              = 130\n"
         "Status                 = 131\n"
         "Type                   = 132 (0:NONE, 1:IBBU, 2:BBU, 3:ZCR, 4:ITBBU3, 5:IBBU08, 6:IBBU09, 7:TMMC\n"
         "Device Name            = BBU-A7\n"
         "Manufacturer           = Halvorsen\n"
         "Mfg Date               = 2023/07/19\n"
         "Module version         = M2.04-b\n"
         "Serial number          = 33073\n"
         "Charging state         = 133 (0:UNK, 1:FullyDischarged, 2:FullyCharged, 3:Discharging, 4:Charging, "
         "5:Initialized, 6:Capacitor)\n"
         "Design voltage         = 33330\n"
         "Voltage                = 33587\n"
         "Current                = 33844\n"
         "Temperature            = 134\n"
         "Voltage is low         = true\n"
         "Temp is high           = true\n"
         "Learn cycle transparent= true\n"
         "Learn Mode             = 135 (0:Auto, 1:Disabled, 2:Warn)\n"
         "Learn Cycle Progress Status           = 136 (0:UNK, 1:Success, 2:Active, 3:Aborted, 4:Suspended, "
         "5:Failed)\n"
         "Learn Cycle Progress Percent complete = -42\n"
         "Learn Cycle Progress Start timestamp  = -1860062895\n"
         "Learn Cycle Progress End timestamp    = -1843219886\n"
         "Learn cycle requested                 = true\n"
         "Next learn cycle                      = -1826376877\n";
}

inline std::string full_battery_text() {
  return full_bbu_start_text() +
         "Capacitor: false\n"
         "Retention time           = 137\n"
         "Relative state of charge = 138\n"
         "Absolute state of charge = 139\n"
         "Expected margin of error = 140\n"
         "Design capacity          = 34101\n"
         "Full capacity            = 34358\n"
         "Remaining capacity       = 34615\n"
         "Completed charge cycles  = 34872\n"
         "Modified Timestamp       = -1412567279\n";
}

inline std::string full_capacitor_text() {
  return full_bbu_start_text() +
         "Capacitor: true\n"
         "Capacitance          = 141\n"
         "Design capacity      = 35129\n"
         "Pack Energy          = 35386\n"
         "Remaining pool space = 142\n"
         "Modified Timestamp       = -1412567279\n";
}

}  // namespace tests
