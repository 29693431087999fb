#include "mcstore/views/machine_text.h"

#include <fmt/core.h>

#include <vector>

namespace mcstore {
namespace {

std::string value_text(Record record, const Field &field) {
  const RawValue value = raw_value(record, field);
  if (const auto *text = std::get_if<std::string>(&value)) return *text;
  if (const auto *number = std::get_if<int64_t>(&value)) return fmt::format("{}", *number);
  const bool is_decimal = field.meaning.base == mcserver::Base::kDecimal;
  return is_decimal ? fmt::format("{}", std::get<uint64_t>(value)) : fmt::format("{:#x}", std::get<uint64_t>(value));
}

}  // namespace

std::string machine_text(const Device &device, const Field &field) {
  if (!device.is_known(field)) return {};
  if (!field.entries) return value_text(device.record(), field);
  std::vector<std::string> entries;
  for (const Record entry : device.entries(field)) {
    std::vector<std::string> parts;
    for (const Field &part : field.entries->fields) parts.push_back(value_text(entry, part));
    entries.push_back(joined(parts, "/"));
  }
  return joined(entries, " ");
}

}  // namespace mcstore
