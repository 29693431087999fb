// What the host calls for physical drives, and the inventory that a simulation makes up.

#include "mcserver_storage.h"
#include "raid/drives/reply.h"
#include "raid/entry_point.h"
#include "raid/simulation.h"
#include "shared/exported.h"
#include "shared/reply_buffer.h"

namespace mcserver::raid::drives {
namespace {

constexpr uint16_t kAnnounced = 2;
constexpr uint8_t kSimulatedSlots = 3;  // one more than announced, and beyond the length: hosts count on finding it
constexpr uint64_t kSimulatedSize = 0x40000000;

// Fields that do not appear here stay as the buffer held them.
void write_simulated_record(StorPhyDriveInfo *record) {
  record->controller_index = 1;
  record->slot_num = 1;
  record->lsi_drive_num = 1;
  record->power_state = 0;
  record->device_id = 1;
  record->enclosure_device_id = 2;
  record->media_err_count = 0;
  record->other_err_count = 0;
  record->predictive_failure_count = 0;
  record->disabled_for_removal = 0;
  record->block_size = 4096;
  record->raw_size = kSimulatedSize;
  record->non_coerced_size = kSimulatedSize;
  record->coerced_size = kSimulatedSize;
  record->link_speed = 3;
  record->device_type = 1;
  record->interface_type = 2;
  write_text(record->product_id, "ST3300657SS");
  write_text(record->vendor, "SEAGATE");
  write_text(record->firmware, " ");
  write_text(record->serial_num, "6SJ3E0QY");
  record->status = 0;
  record->fault = 0;
  record->online = 1;
  record->temp_valid = 0;
  record->temperature = 0;
  record->rebuild_status = 0;
  record->rebuild_percent_complete = -1;
  record->rebuild_start_timestamp = MC_STORE_NO_TIME;
  record->rebuild_end_timestamp = MC_STORE_NO_TIME;
  record->copyback_status = 0;
  record->copyback_percent_complete = -1;
  record->copyback_start_timestamp = MC_STORE_NO_TIME;
  record->copyback_end_timestamp = MC_STORE_NO_TIME;
  record->boot_drive = 0;
  record->patrol_read_status = 0;
  record->patrol_read_percent_complete = -1;
  record->patrol_read_start_timestamp = MC_STORE_NO_TIME;
  record->patrol_read_end_timestamp = MC_STORE_NO_TIME;
  record->clear_status = 0;
  record->clear_percent_complete = -1;
  record->clear_start_timestamp = MC_STORE_NO_TIME;
  record->clear_end_timestamp = MC_STORE_NO_TIME;
  record->erase_status = 0;
  record->erase_percent_complete = -1;
  record->erase_start_timestamp = MC_STORE_NO_TIME;
  record->erase_end_timestamp = MC_STORE_NO_TIME;
  record->physical_block_size = record->block_size;
  record->transport_ready = 0;
  record->pd_sed_state = 0;
}

int32_t simulate(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_simulation("mc_get_store_phydrives", 1554, reply, Layout::length(kAnnounced), len))
    return MC_STORE_REPLY_TOO_LARGE;

  // Numbers stay in the byte order of the machine: this is what tells a simulation from a real reply.
  write_header(reply.bytes(), 1, kAnnounced, kAnnounced, Layout::kRecordSize);
  for (uint8_t slot = 0; slot < kSimulatedSlots; ++slot) write_simulated_record(Layout::record_at(reply.bytes(), slot));
  return MC_STORE_SUCCESS;
}

}  // namespace

EXPORTED int32_t mc_get_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_full({"mc_get_store_phydrives", 1537}, get_store_phydrives, simulate, ctx, buf, bufsize, len);
}

EXPORTED int32_t mc_delta_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_delta({"mc_delta_store_phydrives", 1635}, get_store_phydrives, ctx, buf, bufsize, len);
}

}  // namespace mcserver::raid::drives
