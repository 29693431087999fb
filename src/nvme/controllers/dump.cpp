// A controller or switch as text, for service engineers.

#include <cstdio>

#include "mcserver_storage.h"
#include "nvme/controllers/fields.h"
#include "nvme/controllers/switch_status.h"
#include "shared/exported.h"
#include "shared/record_text.h"
#include "shared/trace.h"

namespace mcserver::nvme::controllers {

EXPORTED void print_nvme_ctlrinfo(const NvmeCtlrInfo *record, FILE *stream) {
  if (!record) {
    TRACE("print_nvme_ctlrinfo", 841, "print_nvme_ctlrinfo: ctlr is NULL!\n");
    return;
  }
  if (!stream) return;  // the caller's error

  const ShownRecord shown(record);
  print_lines(stream, lines_of<kNameAndType>, shown.bytes());
  print_lines(stream, lines_of<kModTimestamp>, shown.bytes());
  print_lines(stream, lines_of<kStatusAndDrives>, shown.bytes(), nvme_status_names);
  if (is_switch(*record)) {
    print_lines(stream, lines_of<kSwitch>, shown.bytes());
    const SwitchStatus own(shown.text_at(kSwitchStatus.offset), MC_NVME_SEVERE_FAULT);
    fprintf(stream, kSwitchStatus.label, own.status);
    if (own.description) fprintf(stream, "switch-status-desc: %s\n", own.description);
    const SwitchStatus link(shown.text_at(kLinkStatus.offset), MC_NVME_MODERATE_FAULT);
    fprintf(stream, kLinkStatus.label, link.status);
    // The empty line that ends a record comes only here.
    if (link.description) fprintf(stream, "link-status-desc: %s\n\n", link.description);
  }
  fflush(stream);
}

}  // namespace mcserver::nvme::controllers
