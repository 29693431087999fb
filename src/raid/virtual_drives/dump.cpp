// The virtual drive traces for service engineers: a record field by field, and the summary lists.

#include <cstddef>
#include <cstdio>
#include <span>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/virtual_drive_record.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::raid::virtual_drives {
namespace {

constexpr ListDump kListDump = {"/var/mctool_vddebug", "/var/mctool_vddebug.txt", ""};  // each entry is a line

constexpr std::span<const Line> kLines = lines_of<records::kVirtualDrive>;
constexpr size_t kMembersRow = row_of(records::kVirtualDrive, "pd");
constexpr size_t kHotSpareCount = row_of(records::kVirtualDrive, "num_hot_spares");
constexpr size_t kHotSparesRow = row_of(records::kVirtualDrive, "hot_spares");
constexpr Field kMembers = records::kVirtualDrive[kMembersRow];
constexpr Field kMembersV5 = records::kVirtualDrive[row_of(records::kVirtualDrive, "pd_v5")];
constexpr Field kHotSpares = records::kVirtualDrive[kHotSparesRow];

// The order of the record, but with all member drives together.
void print_record(const StorVirtDriveInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  fprintf(stream, "\n\n\nVirtual Drive ===================**************===============\n\n\n");
  print_lines(stream, kLines.first(kMembersRow), shown.bytes());
  print_entries(stream, kMembers, shown.bytes(), record->num_physical_drives);
  print_entries(stream, kMembersV5, shown.bytes(), record->num_physical_drives);
  print_line(stream, kLines[kHotSpareCount], shown.bytes());
  print_entries(stream, kHotSpares, shown.bytes(), record->num_hot_spares);
  print_lines(stream, kLines.subspan(kHotSparesRow + 1), shown.bytes());
}

// A text that fills its field runs on to the end of the entry at most.
void print_entry(const VdSummary *entry, FILE *stream) {
  const ShownRecord shown(entry);
  fprintf(stream, "[%s]-[%s] mod_timestamp=%d\n", shown.text_at(offsetof(VdSummary, name)),
          shown.text_at(offsetof(VdSummary, guid)), static_cast<int32_t>(entry->mod_timestamp));
}

}  // namespace

EXPORTED void print_vdinfo(const StorVirtDriveInfo *record, FILE *stream) { dump_record(record, stream, print_record); }

EXPORTED void print_vd_list(const VdSummary *list, int32_t count, const char *label) {
  dump_list(kListDump, list, count, label, print_entry);
}

}  // namespace mcserver::raid::virtual_drives
