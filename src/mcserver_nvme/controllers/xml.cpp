// The XML answer for controllers and switches.

#include "mcserver_nvme/controllers/fields.h"
#include "mcserver_nvme/controllers/switch_status.h"
#include "mcserver_nvme/xml_text.h"
#include "mcserver_storage.h"
#include "shared/enum_name.h"
#include "shared/exported.h"
#include "shared/record_text.h"
#include "shared/trace.h"

namespace mcserver::nvme::controllers {
namespace {

void write_status(XmlText &xml, const SwitchStatus &shown, const char *name, const char *description_name) {
  xml.attribute(name, shown.status);
  if (shown.description) xml.attribute(description_name, shown.description);
}

void write_controller(XmlText &xml, const NvmeCtlrInfo *record) {
  const ShownRecord shown(record);
  xml.open(kElement);
  xml.attributes(lines_of<kNameAndType>, shown.bytes());
  xml.attributes(lines_of<kStatusAndDrives>, shown.bytes());
  if (is_switch(*record)) {
    xml.attributes(lines_of<kSwitch>, shown.bytes());
    write_status(xml, {shown.text(kSwitchStatus), kSevereFault}, "switch-status", "switch-status-desc");
    write_status(xml, {shown.text(kLinkStatus), kModerateFault}, "link-status", "link-status-desc");
  }
  xml.close();
}

}  // namespace

EXPORTED void xmlize_nvme_controller(const uint8_t *image, char *out, uint32_t *size) {
  constexpr char function[] = "xmlize_nvme_controller";
  if (!out || !size) {
    TRACE(function, 134, "No buffer passed in to generate xml\n");
    return;
  }
  if (!image) {
    *size = 0;  // the caller's error
    return;
  }
  const auto *header = reinterpret_cast<const NvmeCtlrImageHeader *>(image);
  if (*size < xml_capacity(header->count)) {
    *size = 0;
    TRACE(function, 139, "Buffer passed in to generate xml is smaller than required\n");
    return;
  }

  XmlText xml(out, *size);
  xml.open(kSummaryElement);
  xml.attribute("count", header->count);
  xml.attribute("state", name_or_empty(header->state, nvme_state_names));
  xml.close();
  const auto *records = reinterpret_cast<const NvmeCtlrInfo *>(header + 1);
  for (uint32_t i = 0; i < header->count; ++i) write_controller(xml, records + i);
  *size = xml.size();
}

}  // namespace mcserver::nvme::controllers
