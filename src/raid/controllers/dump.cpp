// The controller traces for service engineers: a record field by field, and the summary lists.

#include <cstdio>
#include <span>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/controller_record.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::raid::controllers {
namespace {

constexpr ListDump kListDump = {"/var/mctool_ctlrdebug", "/var/mctool_ctlrdebug.txt"};

constexpr std::span<const Line> kLines = lines_of<records::kController>;
constexpr const Line &kIndex = kLines[row_of(records::kController, "index")];
constexpr const Line &kController = kLines[row_of(records::kController, "controller")];
constexpr const Line &kSlotName = kLines[row_of(records::kController, "smbios_pcislotname")];
constexpr const Line &kProductName = kLines[row_of(records::kController, "product_name")];
constexpr const Line &kIsSupported = kLines[row_of(records::kController, "is_supported")];
constexpr std::span kTheRest = kLines.subspan(row_of(records::kController, "reason_not_supported"));

void print_record(const StorCtlrInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  print_line(stream, kController, shown.bytes());
  print_line(stream, kSlotName, shown.bytes());
  if (record->is_supported != 1) {
    print_line(stream, kIsSupported, shown.bytes());  // "true" here means neither 0 nor 1
    return;
  }
  print_line(stream, kIndex, shown.bytes());
  print_line(stream, kProductName, shown.bytes());
  print_line(stream, kIsSupported, shown.bytes());
  print_lines(stream, kTheRest, shown.bytes());
}

void print_entry(const CtlrSummary *entry, FILE *stream) { fprintf(stream, "[%d]  ", entry->index); }

}  // namespace

EXPORTED void print_ctlrinfo(const StorCtlrInfo *record, FILE *stream) { dump_record(record, stream, print_record); }

EXPORTED void print_ctlr_list(const CtlrSummary *list, int32_t count, const char *title) {
  dump_list(kListDump, list, count, title, print_entry);
}

}  // namespace mcserver::raid::controllers
