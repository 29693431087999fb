#include "records/layout.h"

AT(StorBbuInfo, controller_index, 0, 1);
AT(StorBbuInfo, change_id, 1, 1);
AT(StorBbuInfo, status, 2, 1);
AT(StorBbuInfo, type, 3, 1);
AT(StorBbuInfo, device_name, 4, 8);
AT(StorBbuInfo, manufacturer, 12, 12);
AT(StorBbuInfo, mfg_date, 24, 11);
AT(StorBbuInfo, module_version, 35, 8);
AT(StorBbuInfo, serial_number, 43, 2);
AT(StorBbuInfo, charging_state, 45, 1);
AT(StorBbuInfo, design_voltage, 46, 2);
AT(StorBbuInfo, voltage, 48, 2);
AT(StorBbuInfo, current, 50, 2);
AT(StorBbuInfo, temperature, 52, 1);
AT(StorBbuInfo, voltage_low, 53, 1);
AT(StorBbuInfo, temp_high, 54, 1);
AT(StorBbuInfo, learn_cycle_transparent, 55, 1);
AT(StorBbuInfo, learn_mode, 56, 1);
AT(StorBbuInfo, learn_cycle_status, 57, 1);
AT(StorBbuInfo, learn_cycle_percent_complete, 58, 1);
AT(StorBbuInfo, learn_cycle_start_timestamp, 59, 4);
AT(StorBbuInfo, learn_cycle_end_timestamp, 63, 4);
AT(StorBbuInfo, learn_cycle_requested, 67, 1);
AT(StorBbuInfo, next_learn_cycle, 68, 4);
AT(StorBbuInfo, capacitor, 72, 1);
AT(StorBbuInfo, modified_timestamp, 85, 4);
AT(StorBbuInfo, tfm_vendor, 89, 20);
AT(StorBbuInfo, tfm_model, 109, 20);
AT(StorBbuInfo, tfm_serial_num, 129, 16);
AT(StorBbuInfo, tfm_revision, 145, 16);
_Static_assert(sizeof(StorBbuInfo) == 161, "a BBU record has 161 bytes");

AT(StorBbuInfo, capacitor_data.capacitance, 73, 1);
AT(StorBbuInfo, capacitor_data.design_capacity, 74, 2);
AT(StorBbuInfo, capacitor_data.pack_energy, 76, 2);
AT(StorBbuInfo, capacitor_data.remaining_pool_space, 78, 1);
AT(StorBbuInfo, capacitor_data.unused, 79, 6);
_Static_assert(sizeof(StorBbuCapacitor) == 12, "a capacitor's data end at byte 85");

AT(StorBbuInfo, battery_data.retention_time, 73, 1);
AT(StorBbuInfo, battery_data.relative_state_of_charge, 74, 1);
AT(StorBbuInfo, battery_data.absolute_state_of_charge, 75, 1);
AT(StorBbuInfo, battery_data.expected_margin_of_error, 76, 1);
AT(StorBbuInfo, battery_data.design_capacity, 77, 2);
AT(StorBbuInfo, battery_data.full_capacity, 79, 2);
AT(StorBbuInfo, battery_data.remaining_capacity, 81, 2);
AT(StorBbuInfo, battery_data.completed_charge_cycles, 83, 2);
_Static_assert(sizeof(StorBbuBattery) == 12, "a battery's data end at byte 85");

AT(BbuSummary, controller_index, 0, 1);
AT(BbuSummary, mod_timestamp, 4, 4);
_Static_assert(sizeof(BbuSummary) == 8, "lists are allocated in entries of 8 bytes");

AT(BbuReplyHeader, type, 0, 1);
AT(BbuReplyHeader, zero_1, 1, 1);
AT(BbuReplyHeader, simulated, 2, 1);
AT(BbuReplyHeader, count, 3, 1);
AT(BbuReplyHeader, record_size, 4, 4);
AT(BbuReplyHeader, zero_2, 8, 1);
AT(BbuReplyHeader, unwritten, 9, 8);
_Static_assert(sizeof(BbuReplyHeader) == 17, "the records begin at byte 17");
