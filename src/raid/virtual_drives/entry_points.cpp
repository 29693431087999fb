// What the host calls for virtual drives, and the inventory that a simulation makes up.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/entry_point.h"
#include "raid/simulation.h"
#include "raid/virtual_drives/reply.h"
#include "shared/exported.h"
#include "shared/reply_buffer.h"

namespace mcserver::raid::virtual_drives {
namespace {

constexpr uint8_t kSimulatedCount = 2;
constexpr uint8_t kSimulatedMembers = 2;

// Fields that do not appear here stay as the buffer held them.
void write_simulated_record(uint8_t index, StorVirtDriveInfo *record) {
  record->controller_index = 1;
  record->target_id = 1;
  snprintf(record->guid, sizeof record->guid, "GUID-%d", index);
  snprintf(record->name, sizeof record->name, "VirtDrive-%d", index);
  record->status = 0;
  record->size = 0x40000000;
  record->raid_level = 1;
  record->strip_size = 4096;
  record->drives_per_span = 1;
  record->span_depth = 1;
  record->access_policy = 0;
  record->io_policy = 0;
  record->read_ahead_policy = 0;
  record->current_write_cache_policy = 2;
  record->requested_write_cache_policy = 2;
  record->drive_cache_policy = 1;
  record->allow_background_init = 0;
  record->auto_snapshot = 1;
  record->auto_delete_oldest = 1;
  record->num_physical_drives = kSimulatedMembers;
  record->num_hot_spares = kSimulatedMembers;
  for (uint8_t member = 0; member < kSimulatedMembers; ++member) {
    record->pd[member] = {.controller_index = 1, .slot_number = 1};
    record->hot_spares[member] = {.controller_index = 1,
                                  .slot_number = 1,
                                  .span = 0,
                                  .starting_block = 0,
                                  .number_of_blocks = 4096,
                                  .hot_spare_tail_byte = 0};
  }
  record->remaining_space = 0;
  record->reconstruction_status = 0;
  record->reconstruction_percent_complete = 255;
  record->reconstruction_start_timestamp = -1;
  record->reconstruction_end_timestamp = -1;
  record->boot_drive = 0;
  record->vd_sed_state = 0;
}

int32_t simulate(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_simulation("mc_get_store_virtdrives", 2023, reply, Layout::length(kSimulatedCount), len))
    return MC_STORE_REPLY_TOO_LARGE;

  // Numbers stay in the byte order of the machine: this is what tells a simulation from a real reply.
  write_header(reply.bytes(), kSimulatedCount, Layout::kRecordSize);
  for (uint8_t index = 0; index < kSimulatedCount; ++index)
    write_simulated_record(index, Layout::record_at(reply.bytes(), index));
  return MC_STORE_SUCCESS;
}

}  // namespace

EXPORTED int32_t mc_get_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_full({"mc_get_store_virtdrives", 2006}, get_store_virtdrives, simulate, ctx, buf, bufsize, len);
}

EXPORTED int32_t mc_delta_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_delta({"mc_delta_store_virtdrives", 2096}, get_store_virtdrives, ctx, buf, bufsize, len);
}

}  // namespace mcserver::raid::virtual_drives
