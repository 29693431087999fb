#include "mcstore/reply.h"

#include <algorithm>

#include "mcstore/reply_parsers.h"

namespace mcstore {

std::string Device::text(std::string_view name) const {
  const auto value = std::find_if(values.begin(), values.end(), [&](const Value &one) { return one.name == name; });
  return value == values.end() ? "" : value->text.value_or("");
}

ParsedReply parse_reply(const Kind &kind, std::string bytes) {
  ParsedReply reply;
  if (bytes.empty()) return reply;
  reply = kind.layout ? parse_binary_reply(kind, bytes) : parse_xml_reply(kind, bytes);
  reply.bytes = std::move(bytes);
  return reply;
}

bool is_gone(const Kind &kind, const Device &device) {
  return !kind.gone_field.empty() && device.text(kind.gone_field) == kind.gone_text;
}

std::string identity_of(const Kind &kind, const Device &device) {
  std::string key;
  for (const std::string_view name : kind.identity) key += device.text(name) + '\n';
  return key;
}

}  // namespace mcstore
