#include "mcstore/source/xml_reply.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <pugixml.hpp>

namespace mcstore {
namespace {

using mcserver::XmlForm;

// The texts of some statuses stand in an attribute of their own, behind a word.
constexpr std::string_view kDescription = "-desc";

// What the attribute of that field should say.
std::string attribute_text(Record record, const Field &field) {
  switch (field.meaning.xml.form) {
    case XmlForm::kDecimal:
      return fmt::format("{}", raw_number(record, field));
    case XmlForm::kHexadecimal:
      return fmt::format("{:x}", raw_number(record, field));
    case XmlForm::kPrefixedHexadecimal:
      return fmt::format("{:#x}", raw_number(record, field));
    default: {
      if (field.type != mcserver::FieldType::kStatus) return text_of(record, field);
      const char *word = word_of(record, field);
      return word ? word : "";
    }
  }
}

const Field *field_of_attribute(const Kind &kind, std::string_view name) {
  const auto field = std::ranges::find_if(
      kind.fields, [&](const Field &one) { return one.meaning.xml.name && one.meaning.xml.name == name; });
  return field == kind.fields.end() ? nullptr : &*field;
}

// Does the attribute say what the record does?
bool agrees(const Kind &kind, const pugi::xml_node &element, const pugi::xml_attribute &attribute, Record record) {
  std::string name = attribute.name();
  const pugi::xml_attribute description = element.attribute((name + std::string(kDescription)).c_str());
  if (description) return true;  // the word before a description says less than that does
  if (name.ends_with(kDescription)) name.resize(name.size() - kDescription.size());
  const Field *field = field_of_attribute(kind, name);
  return field && attribute_text(record, *field) == attribute.value();
}

std::string element_contradiction(const Kind &kind, const pugi::xml_node &element, Record record) {
  for (const pugi::xml_attribute &attribute : element.attributes())
    if (!agrees(kind, element, attribute, record)) return fmt::format("its attribute {} is another", attribute.name());
  return {};
}

// Is it what stands between the '&' and the ';' of a reference to a character?
bool is_reference(std::string_view name) {
  constexpr std::string_view kNames[] = {"amp", "lt", "gt", "quot", "apos"};
  if (!name.starts_with('#')) return std::ranges::count(kNames, name) > 0;
  const bool is_hexadecimal = name.starts_with("#x");
  const std::string_view digits = name.substr(is_hexadecimal ? 2 : 1);
  const auto is_digit = [&](unsigned char c) { return is_hexadecimal ? isxdigit(c) != 0 : isdigit(c) != 0; };
  return !digits.empty() && std::ranges::all_of(digits, is_digit);
}

bool begins_reference(std::string_view text) {
  const size_t end = text.find(';');
  return end != text.npos && is_reference(text.substr(1, end - 1));
}

// The library is lenient: it takes what is not allowed in the value of an attribute for a part of the text.
std::string markup_in_value(std::string_view reply) {
  bool is_in_tag = false;
  char quote = 0;  // the one that the value ends with; none outside of values
  for (size_t at = 0; at < reply.size(); ++at) {
    const char c = reply[at];
    if (quote && c == '<') return fmt::format("'<' in a value at byte {}", at);
    if (quote && c == '&' && !begins_reference(reply.substr(at)))
      return fmt::format("'&' that begins no reference at byte {}", at);
    if (quote)
      quote = c == quote ? '\0' : quote;
    else if (is_in_tag && (c == '"' || c == '\''))
      quote = c;
    else if (c == '<' || c == '>')
      is_in_tag = c == '<';
  }
  return {};
}

}  // namespace

std::string contradiction(const Kind &kind, std::string_view reply, Record records) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load_buffer(reply.data(), reply.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
  if (!result) return fmt::format("it is not well-formed: {} at byte {}", result.description(), result.offset);
  if (const std::string markup = markup_in_value(reply); !markup.empty())
    return fmt::format("it is not well-formed: {}", markup);

  size_t at = 0;
  for (pugi::xml_node element = document.first_child().next_sibling(); element; element = element.next_sibling()) {
    if (at == records.size()) return "it has more elements than there are devices";
    std::string problem = element_contradiction(kind, element, records.subspan(at, kind.record_size));
    if (!problem.empty()) return problem;
    at += kind.record_size;
  }
  return at == records.size() ? "" : "it has fewer elements than there are devices";
}

}  // namespace mcstore
