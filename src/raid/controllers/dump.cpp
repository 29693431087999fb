// The controller traces for service engineers: a record field by field, and the summary lists.

#include <cstdio>

#include "mcserver_storage.h"
#include "raid/dump_files.h"
#include "records/controller_record.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::raid::controllers {
namespace {

constexpr ListDump kListDump = {"/var/mctool_ctlrdebug", "/var/mctool_ctlrdebug.txt"};

// Lines of the record's first rows, which the dump shows in another order.
template <size_t row>
constexpr Rows kLine = lines_of<records::kController>.only(row);
constexpr size_t kIndex = row_of(records::kController, "index");
constexpr size_t kController = row_of(records::kController, "controller");
constexpr size_t kSlotName = row_of(records::kController, "smbios_pcislotname");
constexpr size_t kProductName = row_of(records::kController, "product_name");
constexpr size_t kIsSupported = row_of(records::kController, "is_supported");
constexpr size_t kTheRest = row_of(records::kController, "reason_not_supported");
static_assert(kTheRest == 5);  // those above, and none besides

void print_record(const StorCtlrInfo *record, FILE *stream) {
  const ShownRecord shown(record);
  print_lines(stream, kLine<kController>, shown.bytes());
  print_lines(stream, kLine<kSlotName>, shown.bytes());
  if (record->is_supported != 1) {
    print_lines(stream, kLine<kIsSupported>, shown.bytes());  // "true" here means neither 0 nor 1
    return;
  }
  print_lines(stream, kLine<kIndex>, shown.bytes());
  print_lines(stream, kLine<kProductName>, shown.bytes());
  print_lines(stream, kLine<kIsSupported>, shown.bytes());
  print_lines(stream, lines_of<records::kController>.from(kTheRest), shown.bytes());
}

void print_entry(const CtlrSummary *entry, FILE *stream) { fprintf(stream, "[%d]  ", entry->index); }

}  // namespace

EXPORTED void print_ctlrinfo(const StorCtlrInfo *record, FILE *stream) { dump_record(record, stream, print_record); }

EXPORTED void print_ctlr_list(const CtlrSummary *list, int32_t count, const char *title) {
  dump_list(kListDump, list, count, title, print_entry);
}

}  // namespace mcserver::raid::controllers
