// The XML answer for drives.

#include "mcserver_nvme/drives/fields.h"
#include "mcserver_nvme/xml_text.h"
#include "mcserver_storage.h"
#include "shared/enum_name.h"
#include "shared/exported.h"
#include "shared/record_text.h"
#include "shared/trace.h"

namespace mcserver::nvme::drives {

EXPORTED void xmlize_nvme_phy_drive(const uint8_t *image, char *out, uint32_t *size) {
  constexpr char function[] = "xmlize_nvme_phy_drive";
  if (!out || !size) {
    TRACE(function, 86, "No buffer passed in to generate xml\n");
    return;
  }
  if (!image) {
    *size = 0;  // the caller's error
    return;
  }
  const auto *header = reinterpret_cast<const NvmeDriveImageHeader *>(image);
  if (*size < xml_capacity(header->count)) {
    *size = 0;
    TRACE(function, 91, "Buffer passed in to generate xml is smaller than required\n");
    return;
  }

  XmlText xml(out, *size);
  xml.open(kSummaryElement);
  xml.attribute("count", header->count);
  xml.attribute("state", name_or_empty(header->state, nvme_state_names));
  xml.close();
  const auto *records = reinterpret_cast<const NvmePhyDriveInfo *>(header + 1);
  for (uint32_t i = 0; i < header->count; ++i) {
    const ShownRecord shown(records + i);
    xml.open(kElement);
    xml.attributes(lines_of<kShown>, shown.bytes());
    xml.close();
  }
  *size = xml.size();
}

}  // namespace mcserver::nvme::drives
