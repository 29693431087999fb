// The virtual drive traces for service engineers: a record field by field, and the summary lists.

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/virtual_drive_record.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::raid::virtual_drives {
namespace {

constexpr ListDump kListDump = {"/var/mctool_vddebug", "/var/mctool_vddebug.txt", ""};  // each entry is a line

constexpr Rows kLines = lines_of<records::kVirtualDrive>;
constexpr size_t kMembersRow = row_of(records::kVirtualDrive, "pd");
constexpr size_t kHotSpareCount = row_of(records::kVirtualDrive, "num_hot_spares");
constexpr size_t kHotSparesRow = row_of(records::kVirtualDrive, "hot_spares");
constexpr Field kMembers = records::kVirtualDrive[kMembersRow];
constexpr Field kMembersV5 = records::kVirtualDrive[row_of(records::kVirtualDrive, "pd_v5")];
constexpr Field kHotSpares = records::kVirtualDrive[kHotSparesRow];

// The first `count` entries of the array, as far as there are so many.
template <const Field &array, const auto &entry_table>
void print_array(FILE *stream, const uint8_t *record, size_t count) {
  constexpr size_t kSize = array.entries->size;
  print_entries(stream, lines_of<entry_table>, record + array.offset, kSize, std::min(count, array.width / kSize));
}

// The order of the record, but with all member drives together.
void print_record(const StorVirtDriveInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  fprintf(stream, "\n\n\nVirtual Drive ===================**************===============\n\n\n");
  print_lines(stream, kLines.first(kMembersRow), shown.bytes());
  print_array<kMembers, records::kMemberDrive>(stream, shown.bytes(), record->num_physical_drives);
  print_array<kMembersV5, records::kMemberDriveV5>(stream, shown.bytes(), record->num_physical_drives);
  print_lines(stream, kLines.only(kHotSpareCount), shown.bytes());
  print_array<kHotSpares, records::kHotSpare>(stream, shown.bytes(), record->num_hot_spares);
  print_lines(stream, kLines.from(kHotSparesRow + 1), shown.bytes());
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
