// One record's text, appended to a file: what the decoders do with each record.

#include <cstdint>
#include <cstdio>

#include "decoders/path.h"
#include "mcserver_storage.h"
#include "shared/exported.h"
#include "shared/stream.h"

namespace mcserver::decoders {
namespace {

// What a family prints to standard output.
struct FamilyMessages {
  bool echoes_path;
  const char *unopened;  // format of the message, which takes the path; without a line end
};

constexpr FamilyMessages kStorage = {true, "error: unable to open file %s"};
constexpr FamilyMessages kNvme = {false, "error: unable to open file %s: %m"};

// The result is that of closing the file, or of printing that it cannot be opened. Without a record the file is made
// all the same.
template <typename Record>
int append(const FamilyMessages &family, const char *output_path, const Record *record,
           void (*dump)(const Record *, FILE *)) {
  if (!output_path) return MC_STORE_UNAVAILABLE;
  const Path path(output_path);
  if (family.echoes_path) puts(path.c_str());

  Stream output(fopen(path.c_str(), "a"));
  if (!output) return printf(family.unopened, path.c_str());
  if (record) dump(record, output.get());
  return output.close();
}

}  // namespace

EXPORTED void print_controllerinfo(const char *output_path, const StorCtlrInfo *record) {
  append(kStorage, output_path, record, print_ctlrinfo);
}

EXPORTED void print_physicaldriveinfo(const char *output_path, const StorPhyDriveInfo *record) {
  append(kStorage, output_path, record, print_pdinfo);
}

EXPORTED void print_virtualdriveinfo(const char *output_path, const StorVirtDriveInfo *record) {
  append(kStorage, output_path, record, print_vdinfo);
}

EXPORTED void print_BBUInfo(const char *output_path, const StorBbuInfo *record) {
  append(kStorage, output_path, record, print_bbuInfo);
}

EXPORTED void print_nvme_controllerinfo(const char *output_path, const NvmeCtlrInfo *record) {
  append(kNvme, output_path, record, print_nvme_ctlrinfo);
}

// The only one that opens nothing for a null record.
EXPORTED int print_nvme_physicaldriveinfo(const char *output_path, const NvmePhyDriveInfo *record) {
  if (output_path && !record) return puts("print_nvme_physicaldriveinfo: NULL nvme_pdPtr");
  return append(kNvme, output_path, record, print_nvme_pdinfo);
}

}  // namespace mcserver::decoders
