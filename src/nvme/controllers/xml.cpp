// The XML answer for controllers and switches.

#include "mcserver_storage.h"
#include "nvme/controllers/fields.h"
#include "nvme/controllers/switch_status.h"
#include "nvme/rendering.h"
#include "shared/exported.h"
#include "shared/record_text.h"

namespace mcserver::nvme::controllers {
namespace {

// A description goes into an attribute of its own, which no field has.
void write_status(XmlText &xml, const SwitchStatus &shown, const Field &field, const char *description_name) {
  xml.attribute(field.meaning.xml.name, shown.status);
  if (shown.description) xml.attribute(description_name, shown.description);
}

void write_controller(XmlText &xml, const NvmeCtlrInfo *record) {
  const ShownRecord shown(record);
  xml.open(kElement);
  xml.attributes(attributes_of<kNameAndType>, shown.bytes());
  xml.attributes(attributes_of<kStatusAndDrives>, shown.bytes());
  if (is_switch(*record)) {
    xml.attributes(attributes_of<kSwitch>, shown.bytes());
    const SwitchStatus own(shown.text_at(kSwitchStatus.offset), MC_NVME_SEVERE_FAULT);
    write_status(xml, own, kSwitchStatus, "switch-status-desc");
    const SwitchStatus link(shown.text_at(kLinkStatus.offset), MC_NVME_MODERATE_FAULT);
    write_status(xml, link, kLinkStatus, "link-status-desc");
  }
  xml.close();
}

}  // namespace

EXPORTED void xmlize_nvme_controller(const uint8_t *image, char *out, uint32_t *size) {
  constexpr Rendering how = {"xmlize_nvme_controller", 134, 139, kSummaryElement};
  render<NvmeCtlrImageHeader, NvmeCtlrInfo>(how, image, out, size, write_controller);
}

}  // namespace mcserver::nvme::controllers
