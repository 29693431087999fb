#include "formats/xml_elements.h"

#include <fmt/format.h>

#include <span>
#include <stdexcept>
#include <string_view>

#include "mcserver_storage.h"
#include "nvme/controllers/fields.h"
#include "nvme/drives/fields.h"

namespace formats {
namespace {

using mcserver::Field;

std::string_view conversion(mcserver::XmlForm form) {
  switch (form) {
    case mcserver::XmlForm::kText:
      return "%s";
    case mcserver::XmlForm::kDecimal:
      return "%d";
    case mcserver::XmlForm::kHexadecimal:
      return "%x";
    case mcserver::XmlForm::kPrefixedHexadecimal:
      return "0x%x";
  }
  return "";
}

XmlAttribute attribute(const Field &field) {
  const mcserver::XmlAttribute &xml = field.meaning.xml;
  return {.text = fmt::format("{}=\"{}\"", xml.name, conversion(xml.form)), .field = field.name};
}

void append(std::vector<XmlAttribute> &attributes, std::span<const Field> fields) {
  for (const Field &field : fields) attributes.push_back(attribute(field));
}

XmlElements controllers() {
  using namespace mcserver::nvme::controllers;
  XmlElements xml{.summary = kSummaryElement,
                  .device = kElement,
                  .count_width = sizeof(NvmeCtlrImageHeader::count),
                  .attributes = {},
                  .switch_attributes = {}};
  append(xml.attributes, kNameAndType);
  append(xml.attributes, kStatusAndDrives);
  append(xml.switch_attributes, kSwitch);
  append(xml.switch_attributes, std::span(&kSwitchStatus, 1));
  append(xml.switch_attributes, std::span(&kLinkStatus, 1));
  return xml;
}

XmlElements drives() {
  using namespace mcserver::nvme::drives;
  XmlElements xml{.summary = kSummaryElement,
                  .device = kElement,
                  .count_width = sizeof(NvmeDriveImageHeader::count),
                  .attributes = {},
                  .switch_attributes = {}};
  append(xml.attributes, kShown);
  return xml;
}

}  // namespace

XmlElements xml_elements(const mcstore::Kind &kind) {
  if (kind.name == "nvme-controllers") return controllers();
  if (kind.name == "nvme-drives") return drives();
  throw std::logic_error(fmt::format("no XML is known of {}", kind.name));
}

}  // namespace formats
