// The BBU record's layout, in the order of its bytes: one table for capacitors and one for batteries, chosen by the
// capacitor flag. Byte order, dumps and the tool's columns follow from it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kBbuStart = std::to_array<Field>({
    FIELD(StorBbuInfo, controller_index, "Controller Index       = %d\n"),
    FIELD(StorBbuInfo, change_id, "Change ID              = %d\n"),
    FIELD(StorBbuInfo, status, "Status                 = %d\n"),
    FIELD(StorBbuInfo, type,
          "Type                   = %d (0:NONE, 1:IBBU, 2:BBU, 3:ZCR, 4:ITBBU3, 5:IBBU08, 6:IBBU09, 7:TMMC\n",
          {.words = kBbuTypes}),
    FIELD(StorBbuInfo, device_name, "Device Name            = %s\n"),
    FIELD(StorBbuInfo, manufacturer, "Manufacturer           = %s\n"),
    FIELD(StorBbuInfo, mfg_date, "Mfg Date               = %s\n"),
    FIELD(StorBbuInfo, module_version, "Module version         = %s\n"),
    FIELD(StorBbuInfo, serial_number, "Serial number          = %d\n"),
    FIELD(StorBbuInfo, charging_state,
          "Charging state         = %d (0:UNK, 1:FullyDischarged, 2:FullyCharged, 3:Discharging, 4:Charging, "
          "5:Initialized, 6:Capacitor)\n",
          {.words = kChargingStates}),
    FIELD(StorBbuInfo, design_voltage, "Design voltage         = %d\n"),
    FIELD(StorBbuInfo, voltage, "Voltage                = %d\n"),
    FIELD(StorBbuInfo, current, "Current                = %d\n"),
    FIELD(StorBbuInfo, temperature, "Temperature            = %d\n", {.unit = Unit::kCelsius}),
    flag(FIELD(StorBbuInfo, voltage_low, "Voltage is low         = %s\n")),
    flag(FIELD(StorBbuInfo, temp_high, "Temp is high           = %s\n")),
    flag(FIELD(StorBbuInfo, learn_cycle_transparent, "Learn cycle transparent= %s\n")),
    FIELD(StorBbuInfo, learn_mode, "Learn Mode             = %d (0:Auto, 1:Disabled, 2:Warn)\n",
          {.words = kLearnModes}),
    FIELD(StorBbuInfo, learn_cycle_status,
          "Learn Cycle Progress Status           = %d (0:UNK, 1:Success, 2:Active, 3:Aborted, 4:Suspended, "
          "5:Failed)\n",
          {.words = kOperationStates}),
    FIELD(StorBbuInfo, learn_cycle_percent_complete, "Learn Cycle Progress Percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorBbuInfo, learn_cycle_start_timestamp, "Learn Cycle Progress Start timestamp  = %d\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorBbuInfo, learn_cycle_end_timestamp, "Learn Cycle Progress End timestamp    = %d\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    flag(FIELD(StorBbuInfo, learn_cycle_requested, "Learn cycle requested                 = %s\n")),
    FIELD(StorBbuInfo, next_learn_cycle, "Next learn cycle                      = %ld\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    flag(FIELD(StorBbuInfo, capacitor, "Capacitor: %s\n")),
});

inline constexpr auto kBbuCapacitorData = std::to_array<Field>({
    FIELD(StorBbuInfo, capacitor_data.capacitance, "Capacitance          = %d\n"),
    FIELD(StorBbuInfo, capacitor_data.design_capacity, "Design capacity      = %d\n"),
    FIELD(StorBbuInfo, capacitor_data.pack_energy, "Pack Energy          = %d\n"),
    FIELD(StorBbuInfo, capacitor_data.remaining_pool_space, "Remaining pool space = %d\n"),
    FIELD(StorBbuInfo, capacitor_data.unused, kUnprinted),
});

inline constexpr auto kBbuBatteryData = std::to_array<Field>({
    FIELD(StorBbuInfo, battery_data.retention_time, "Retention time           = %d\n"),
    FIELD(StorBbuInfo, battery_data.relative_state_of_charge, "Relative state of charge = %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorBbuInfo, battery_data.absolute_state_of_charge, "Absolute state of charge = %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorBbuInfo, battery_data.expected_margin_of_error, "Expected margin of error = %d\n"),
    FIELD(StorBbuInfo, battery_data.design_capacity, "Design capacity          = %d\n"),
    FIELD(StorBbuInfo, battery_data.full_capacity, "Full capacity            = %d\n"),
    // The one number that consumers read in little-endian order from every reply.
    as_stored(FIELD(StorBbuInfo, battery_data.remaining_capacity, "Remaining capacity       = %d\n")),
    FIELD(StorBbuInfo, battery_data.completed_charge_cycles, "Completed charge cycles  = %d\n"),
});

inline constexpr auto kBbuEnd = std::to_array<Field>({
    FIELD(StorBbuInfo, modified_timestamp, "Modified Timestamp       = %d\n"),
    FIELD(StorBbuInfo, tfm_vendor, "TFM Vendor    = %s\n"),
    FIELD(StorBbuInfo, tfm_model, "TFM Model     = %s\n"),
    FIELD(StorBbuInfo, tfm_serial_num, "TFM Serial Num= %s\n"),
    FIELD(StorBbuInfo, tfm_revision, "TFM Revision  = %s\n"),
});

inline constexpr auto kBbuCapacitor = joined(kBbuStart, kBbuCapacitorData, kBbuEnd);
inline constexpr auto kBbuBattery = joined(kBbuStart, kBbuBatteryData, kBbuEnd);
static_assert(sizeof(StorBbuInfo) == 161 && describes<StorBbuInfo, kBbuCapacitor>() &&
              describes<StorBbuInfo, kBbuBattery>());
static_assert(sizeof(BbuSummary) == 8);

inline constexpr auto kBbuIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(StorBbuInfo, BbuSummary, controller_index),
});

// The product data of the flash module, with which BBU records are completed.
inline constexpr char kFlashModulePath[] = "/var/log/TFM_FRU.bin";

inline constexpr KindFacts kBbuFacts = {
    .name = "bbus",
    .lock_path = kRaidLockPath,
    .store_path = "/var/storBBU_info",
    .identity = kBbuIdentity,
    .gone = {},  // a BBU that is gone is not reported
    .greatest_count = std::numeric_limits<decltype(BbuReplyHeader::count)>::max(),
};
static_assert(fits_table<kBbuBattery, kBbuFacts>());

}  // namespace mcserver::records
