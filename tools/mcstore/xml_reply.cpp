// XML replies: a summary element, then an element for each device, all of them with attributes only.

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>
#include <set>

#include "mcstore/reply_parsers.h"

namespace mcstore {
namespace {

// XML spells with dashes what fields, and so JSON keys, spell with underscores.
std::string field_name(const char *attribute) {
  std::string name = attribute;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

// Numbers are numbers, if they are numbers in the record too; all else is a text.
RawValue typed_value(const Kind &kind, const std::string &name, const std::string &text) {
  const auto field =
      std::find_if(kind.fields.begin(), kind.fields.end(), [&](const Field &one) { return one.name == name; });
  if (field == kind.fields.end() || field->type != mcserver::FieldType::kUnsigned) return text;

  using mcserver::XmlForm;
  const XmlForm form = field->meaning.xml.form;
  const bool has_prefix = form == XmlForm::kPrefixedHexadecimal && text.starts_with("0x");
  const char *const start = text.data() + (has_prefix ? 2 : 0);
  const char *const end = text.data() + text.size();
  uint64_t number = 0;
  const auto result = std::from_chars(start, end, number, form == XmlForm::kDecimal ? 10 : 16);
  return result.ec == std::errc() && result.ptr == end ? RawValue(number) : RawValue(text);
}

Device device_from(const Kind &kind, const pugi::xml_node &element) {
  Device device;
  std::set<std::string> names;
  for (const pugi::xml_attribute &attribute : element.attributes()) {
    const std::string name = field_name(attribute.name());
    if (!names.insert(name).second)
      throw MalformedReply(fmt::format("an element has two attributes {}", attribute.name()));
    device.values.push_back({name, typed_value(kind, name, attribute.value()), printable(attribute.value())});
  }
  return device;
}

}  // namespace

ParsedReply parse_xml_reply(const Kind &kind, const std::string &text) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
  if (!result)
    throw MalformedReply(
        fmt::format("the reply is not well-formed XML: {} at byte {}", result.description(), result.offset));

  ParsedReply reply;
  const pugi::xml_node summary = document.first_child();
  reply.state = std::string(summary.attribute("state").value());
  for (pugi::xml_node element = summary.next_sibling(); element; element = element.next_sibling())
    reply.devices.push_back(device_from(kind, element));

  // A hostile text may end its attribute and begin an element of its own.
  const auto count = summary.attribute("count").as_ullong();
  if (count != reply.devices.size())
    throw MalformedReply(
        fmt::format("the reply announces {} devices and has {} elements", count, reply.devices.size()));
  return reply;
}

}  // namespace mcstore
