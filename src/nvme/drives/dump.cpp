// A drive as text, for service engineers.

#include <cstdio>

#include "mcserver_storage.h"
#include "nvme/drives/fields.h"
#include "shared/exported.h"
#include "shared/record_text.h"
#include "shared/trace.h"

namespace mcserver::nvme::drives {

EXPORTED void print_nvme_pdinfo(const NvmePhyDriveInfo *record, FILE *stream) {
  if (!stream) {
    TRACE("print_nvme_pdinfo", 882, "print_nvme_pdinfo: nvme_pdPtr is NULL!\n");  // says so of the stream
    return;
  }
  if (!record) return;  // the caller's error

  const ShownRecord shown(record);
  print_lines(stream, lines_of<kShown>, shown.bytes(), nvme_status_names);
  print_lines(stream, lines_of<kModTimestamp>, shown.bytes());
  fflush(stream);
}

}  // namespace mcserver::nvme::drives
