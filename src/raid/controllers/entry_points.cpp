// What the host calls for controllers, and the inventory that a simulation makes up.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/controllers/reply.h"
#include "raid/entry_point.h"
#include "raid/simulation.h"
#include "shared/exported.h"
#include "shared/trace.h"

namespace mcserver::raid::controllers {
namespace {

constexpr uint8_t kSimulatedState = 2;
constexpr uint8_t kSimulatedCount = 2;

// Fields that do not appear here stay as the buffer held them.
void write_simulated_record(uint8_t index, StorCtlrInfo *record) {
  record->index = index;
  snprintf(record->controller, sizeof record->controller, "SLOT-%d", index);
  write_text(record->product_name, "LSI MegaRAID SAS 9266-8i");
  record->is_supported = 1;
  record->reason_not_supported = 1;
  record->controller_status = 0;
  write_text(record->serial_number, "SR136P0796");
  write_text(record->vendor, "LSI Logic");
  record->vendor_id = 0;
  record->device_id = 0;
  record->subvendor_id = 0;
  record->subdevice_id = 0;
  write_text(record->chip_revision, "Re");
  write_text(record->mfg_date, "01/01/2013");
  write_text(record->mfg_rework_date, " ");
  write_text(record->mfg_revision_num, " ");
  write_text(record->bios_version, " ");
  write_text(record->firmware_version, " ");
  write_text(record->preboot_cli_version, " ");
  write_text(record->webbios_version, " ");
  write_text(record->nvdata_version, " ");
  write_text(record->boot_block_version, " ");
  write_text(record->boot_version, " ");
  record->predictive_fail_poll_interval = 5;
  record->rebuild_rate = 55;
  record->patrol_read_rate = 66;
  record->consistency_check_rate = 44;
  record->reconstruction_rate = 44;
  record->cache_flush_interval = 5;
  record->spinup_drive_count = 4;
  record->spinup_delay = 5;
  record->coercion_mode = 0;
  record->cluster_enable = 0;
  record->ecc_bucket_leak_rate = 3;
  record->expose_enclosure_devices = 0;
  record->maintain_pd_fail_history = 0;
  record->maintain_pd_fail_history_2 = 0;
  record->enable_copyback_to_ssd_on_smart_error = 0;
  record->disable_ncq = 0;
  record->spin_down_unconfigured = 1;
  record->enable_ssd_patrol_read = 1;
  record->raid_levels_supported = 0xFFFF;
  record->nvram_present = 0;
  record->serial_debugger_present = 0;
  record->memory_present = 1;
  record->flash_present = 1;
  record->memory_size = 0xFFFFFFFF;
  record->cache_memory_size = 1024;
  record->backend_port_count = 0;
  record->memory_correctable_errors = 0;
  record->memory_uncorrectable_errors = 0;
  record->controller_temperature_sensor_present = 0;
  record->roc_temperature_sensor_present = 0;
  record->drive_temperature_supported = 0;
  record->controller_temperature = 18;
  record->roc_temperature = 18;
  record->patrol_read_operation_status = 0;
  record->patrol_read_percent_complete = -1;
  record->patrol_read_start_timestamp = 0xFFFFFFFF;
  record->patrol_read_end_timestamp = 0xFFFFFFFF;
  record->has_sas_expander = 0;
  record->sub_oem = 255;
  record->pinned_cache_state = 0;
  record->controller_type = 0;
  record->supported_strip_sizes = 1;
  record->default_strip_size = 1;
  record->supported_ctlr_ops = 1;
  record->supported_phys_ops = 1;
  record->supported_virt_ops = 1;
  record->supported_bbu_ops = 1;
  record->valid_controller_attrs = 1;
  write_text(record->controller_status_description, "Optimal");
  record->drive_life_used_percent = 255;
  record->controller_sed_status = 0;
  record->life_left_in_days = 0xFFFF;
}

int32_t simulate(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  constexpr uint32_t needed = Layout::length(kSimulatedCount);
  *len = needed;
  if (needed > bufsize) {
    bufsize = needed;
    // The result is dropped on purpose: the reply is written to the buffer that was passed in.
    mc_grow_attribute_buffer(ctx, needed, &bufsize);
  }
  if (needed > bufsize) {
    TRACE("mc_get_store_ctrls", 1114, "Data length(%d) larger than %d\n", static_cast<int>(needed),
          static_cast<int>(bufsize));
    *len = 0;
    return MC_STORE_REPLY_TOO_LARGE;
  }

  // Numbers stay in the byte order of the machine: this is what tells a simulation from a real reply.
  write_header(buf, kSimulatedState, kSimulatedCount, Layout::kRecordSize);
  for (uint8_t index = 0; index < kSimulatedCount; ++index)
    write_simulated_record(index, Layout::record_at(buf, index));
  return MC_STORE_SUCCESS;
}

}  // namespace

EXPORTED int32_t mc_get_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_full({"mc_get_store_ctrls", 1093}, get_store_ctrls, simulate, ctx, buf, bufsize, len);
}

EXPORTED int32_t mc_delta_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_delta({"mc_delta_store_ctrls", 1225}, get_store_ctrls, ctx, buf, bufsize, len);
}

}  // namespace mcserver::raid::controllers
