// The physical drive traces for service engineers: a record field by field, and the summary lists.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/drive_record.h"
#include "shared/exported.h"
#include "shared/field_proofs.h"
#include "shared/record_text.h"

namespace mcserver::raid::drives {
namespace {

constexpr ListDump kListDump = {"/var/mctool_pddebug", "/var/mctool_pddebug.txt"};

// Not the order of the record.
constexpr auto kBeforeTemperature = rows_named(
    records::kDrive, "controller_index", "slot_num", "lsi_drive_num", "power_state", "device_id", "enclosure_device_id",
    "media_err_count", "other_err_count", "predictive_failure_count", "disabled_for_removal", "block_size", "raw_size",
    "non_coerced_size", "coerced_size", "enclosure_association", "enclosure_logical_id", "enclosure_sas_address[0]",
    "enclosure_sas_address[1]", "link_speed", "power_on_hours", "powercycle_count", "percentage_life",
    "wear_status_days", "status_desc", "device_type", "interface_type", "product_id", "vendor", "firmware",
    "serial_num", "status", "fault", "online", "temp_valid");
constexpr auto kTemperature = rows_named(records::kDrive, "temperature");
constexpr auto kAfterTemperature = rows_named(
    records::kDrive, "rebuild_status", "rebuild_percent_complete", "rebuild_start_timestamp", "rebuild_end_timestamp",
    "copyback_status", "copyback_percent_complete", "copyback_start_timestamp", "copyback_end_timestamp",
    "patrol_read_status", "patrol_read_percent_complete", "patrol_read_start_timestamp", "patrol_read_end_timestamp",
    "clear_status", "clear_percent_complete", "clear_start_timestamp", "clear_end_timestamp", "erase_status",
    "erase_percent_complete", "erase_start_timestamp", "erase_end_timestamp", "boot_drive", "transport_ready",
    "mod_timestamp", "product_id_v3", "locator_state_v7", "physical_block_size", "pd_sed_state", "pd_error",
    "extended_status", "state", "firmware_v37");
static_assert(is_shown_by<records::kDrive, kBeforeTemperature, kTemperature, kAfterTemperature>());

void print_record(const StorPhyDriveInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  fprintf(stream, "\n\n\nPhysical Drive ===================**************===============\n\n\n");
  print_lines(stream, lines_of<kBeforeTemperature>, shown.bytes());
  if (record->temp_valid) print_lines(stream, lines_of<kTemperature>, shown.bytes());
  print_lines(stream, lines_of<kAfterTemperature>, shown.bytes());
}

// A serial number that fills its field runs on to the end of the entry at most.
void print_entry(const PhyDriveSummary *entry, FILE *stream) {
  const ShownRecord shown(entry);
  fprintf(stream, "[%s]  ", shown.text_at(offsetof(PhyDriveSummary, serial_num)));
}

}  // namespace

EXPORTED void print_pdinfo(const StorPhyDriveInfo *record, FILE *stream) { dump_record(record, stream, print_record); }

EXPORTED void print_pd_list(const PhyDriveSummary *list, int32_t count, const char *title) {
  dump_list(kListDump, list, count, title, print_entry);
}

}  // namespace mcserver::raid::drives
