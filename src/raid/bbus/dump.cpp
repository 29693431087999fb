// The BBU traces for service engineers: a record field by field, its flash-module texts, and the summary lists.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/bbu_record.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::raid::bbus {
namespace {

constexpr ListDump kListDump = {"/var/mctool_bbudebug", "/var/mctool_bbudebug.txt"};

// The flash-module texts are not part of a record's dump: in the store file they are seldom right.
constexpr Rows kEnd = lines_of<records::kBbuEnd>;
constexpr size_t kFlashModuleTexts = row_of(records::kBbuEnd, "tfm_vendor");
static_assert(records::kBbuEnd.size() == kFlashModuleTexts + 4);

void print_record(const StorBbuInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  fprintf(stream, "\n\n\nBattery Backup Unit ===================**************===============\n\n\n");
  print_lines(stream, lines_of<records::kBbuStart>, shown.bytes());
  if (record->capacitor)
    print_lines(stream, lines_of<records::kBbuCapacitorData>, shown.bytes());
  else
    print_lines(stream, lines_of<records::kBbuBatteryData>, shown.bytes());
  print_lines(stream, kEnd.first(kFlashModuleTexts), shown.bytes());
}

void print_entry(const BbuSummary *entry, FILE *stream) { fprintf(stream, "[%d]  ", entry->controller_index); }

}  // namespace

EXPORTED void print_bbuInfo(const StorBbuInfo *record, FILE *stream) { dump_record(record, stream, print_record); }

EXPORTED void print_bbuTFMInfo(const StorBbuInfo *record) {
  if (!record) return;
  const Stream dump = open_record_dump();
  if (dump) print_lines(dump.get(), kEnd.from(kFlashModuleTexts), ShownRecord(record).bytes());
}

EXPORTED void print_bbu_list(const BbuSummary *list, int32_t count, const char *title) {
  dump_list(kListDump, list, count, title, print_entry);
}

}  // namespace mcserver::raid::bbus
