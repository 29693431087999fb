// The XML answer for drives.

#include "mcserver_storage.h"
#include "nvme/drives/fields.h"
#include "nvme/rendering.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::nvme::drives {
namespace {

void write_drive(XmlText &xml, const NvmePhyDriveInfo *record) {
  const ShownRecord shown(record);
  xml.open(kElement);
  xml.attributes(attributes_of<kShown>, shown.bytes());
  xml.close();
}

}  // namespace

EXPORTED void xmlize_nvme_phy_drive(const uint8_t *image, char *out, uint32_t *size) {
  constexpr Rendering how = {"xmlize_nvme_phy_drive", 86, 91, kSummaryElement};
  render<NvmeDriveImageHeader, NvmePhyDriveInfo>(how, image, out, size, write_drive);
}

}  // namespace mcserver::nvme::drives
