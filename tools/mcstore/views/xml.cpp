#include "mcstore/views/xml.h"

#include <fmt/core.h>

#include "mcstore/kinds/unit.h"
#include "mcstore/kinds/utf8.h"
#include "mcstore/views/machine_text.h"

namespace mcstore {
namespace {

bool is_xml_character(char32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character != 0xFFFE && character != 0xFFFF;
}

bool stands_for_itself(char32_t character) {
  return character >= 0x20 && character < 0x7F && character != '<' && character != '>' && character != '&' &&
         character != '"';
}

std::string attribute(std::string_view name, std::string_view value) {
  return fmt::format(" {}=\"{}\"", name, xml_text(value));
}

std::string attribute(std::string_view name, uint64_t value) { return attribute(name, fmt::format("{}", value)); }

std::string element(std::string_view name, std::string_view text) {
  return fmt::format("<{0}>{1}</{0}>\n", name, xml_text(text));
}

std::string store_element(const StoreFacts &store) {
  std::string text = "    <store";
  text += attribute("path", store.path);
  text += attribute("modified", iso_time(store.modified));
  text += attribute("size", store.size);
  if (store.announced) text += attribute("announced", *store.announced);
  text += attribute("records", store.records);
  text += attribute("left_over", store.left_over);
  return text + "/>\n";
}

}  // namespace

std::string xml_text(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Utf8Character character = first_character(text);
    const std::string_view bytes = text.substr(0, character.length);
    if (!character.code || !is_xml_character(*character.code))
      for (const char byte : bytes) result += fmt::format("\\x{:02x}", static_cast<unsigned char>(byte));
    else if (stands_for_itself(*character.code))
      result += bytes;
    else
      result += fmt::format("&#x{:x};", static_cast<uint32_t>(*character.code));
    text.remove_prefix(bytes.size());
  }
  return result;
}

std::string xml_begin(std::string_view place) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<inventory format=\"2\"" + attribute("root", place) + ">\n";
}

std::string xml_kind_begin(const KindInventory &inventory) {
  std::string text = "  <kind";
  text += attribute("name", inventory.kind->name);
  text += attribute("status", word_for(inventory.status));
  if (!inventory.error.empty()) text += attribute("error", inventory.error);
  if (inventory.state) text += attribute("state", state_text(inventory));
  text += ">\n";
  if (inventory.store) text += store_element(*inventory.store);
  for (const std::string &note : inventory.notes) text += "    " + element("note", note);
  return text;
}

std::string xml_device(const Device &device, const Verdict &verdict) {
  std::string text = "    <device";
  text += attribute("name", device.name());
  text += attribute("health", word_for(verdict.health));
  text += ">\n";
  for (const std::string &reason : verdict.reasons) text += "      " + element("reason", reason);
  for (const std::string &note : verdict.notes) text += "      " + element("note", note);
  for (const Field &field : device.fields()) {
    text += "      <field";
    text += attribute("name", field.name);
    text += attribute("text", device.text(field));
    text += fmt::format(">{}</field>\n", xml_text(machine_text(device, field)));
  }
  return text + "    </device>\n";
}

std::string xml_kind_end() { return "  </kind>\n"; }

std::string xml_end() { return "</inventory>\n"; }

}  // namespace mcstore
