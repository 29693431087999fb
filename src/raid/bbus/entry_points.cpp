// What the host calls for BBUs, and the inventory that a simulation makes up.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/bbus/reply.h"
#include "raid/entry_point.h"
#include "raid/simulation.h"
#include "shared/exported.h"
#include "shared/reply_buffer.h"

namespace mcserver::raid::bbus {
namespace {

constexpr uint8_t kSimulatedCount = 2;

void write_simulated_battery(StorBbuBattery *battery) {
  battery->retention_time = 1;
  battery->relative_state_of_charge = 100;
  battery->absolute_state_of_charge = 100;
  battery->expected_margin_of_error = 1;
  battery->design_capacity = 5;
  battery->full_capacity = 5;
  battery->remaining_capacity = 5;
  battery->completed_charge_cycles = 10;
}

void write_simulated_capacitor(StorBbuCapacitor *capacitor) {
  capacitor->capacitance = 90;
  capacitor->design_capacity = 100;
  capacitor->pack_energy = 90;
  capacitor->remaining_pool_space = 10;
}

// The first is a battery, the second a capacitor, both on controller 1. Fields that do not appear here stay as the
// buffer held them.
void write_simulated_record(uint8_t index, StorBbuInfo *record) {
  record->controller_index = 1;
  record->change_id = 1;
  record->status = 0;
  record->type = 2;
  snprintf(record->device_name, sizeof record->device_name, "BBU-%d", index);
  write_text(record->manufacturer, "LSI");
  write_text(record->mfg_date, "0000-00-00");
  write_text(record->module_version, " ");
  record->serial_number = 0;
  record->charging_state = 2;
  record->design_voltage = 3;
  record->voltage = 3;
  record->current = 5;
  record->temperature = 21;
  record->voltage_low = 0;
  record->temp_high = 0;
  record->learn_cycle_transparent = 0;
  record->learn_mode = 0;
  record->learn_cycle_status = 0;
  record->learn_cycle_percent_complete = -1;
  record->learn_cycle_start_timestamp = 0xFFFFFFFF;
  record->learn_cycle_end_timestamp = 0xFFFFFFFF;
  record->learn_cycle_requested = 0;
  record->next_learn_cycle = 0;
  record->capacitor = index;
  if (record->capacitor)
    write_simulated_capacitor(&record->capacitor_data);
  else
    write_simulated_battery(&record->battery_data);
}

int32_t simulate(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_simulation("mc_get_store_bbu", 2481, reply, Layout::length(kSimulatedCount), len))
    return MC_STORE_REPLY_TOO_LARGE;

  // Numbers stay in the byte order of the machine: this is what tells a simulation from a real reply.
  write_header(reply.bytes(), 1, kSimulatedCount, Layout::kRecordSize);
  for (uint8_t index = 0; index < kSimulatedCount; ++index)
    write_simulated_record(index, Layout::record_at(reply.bytes(), index));
  return MC_STORE_SUCCESS;
}

}  // namespace

EXPORTED int32_t mc_get_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_full({"mc_get_store_bbu", 2465}, get_store_bbu, simulate, ctx, buf, bufsize, len);
}

EXPORTED int32_t mc_delta_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_delta({"mc_delta_store_bbu", 2551}, get_store_bbu, ctx, buf, bufsize, len);
}

}  // namespace mcserver::raid::bbus
