// The XML answer for controllers and switches.

#include "mcserver_storage.h"
#include "nvme/controllers/fields.h"
#include "nvme/controllers/switch_status.h"
#include "nvme/rendering.h"
#include "shared/exported.h"
#include "shared/record_text.h"

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
  constexpr Rendering how = {"xmlize_nvme_controller", 134, 139, kSummaryElement};
  render<NvmeCtlrImageHeader, NvmeCtlrInfo>(how, image, out, size, write_controller);
}

}  // namespace mcserver::nvme::controllers
