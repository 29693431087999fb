#include "mcstore/kinds/device.h"

#include <algorithm>

namespace mcstore {
namespace {

bool holds(const Device &device, const mcserver::OnlyIf &condition) {
  const Field *field = condition.field ? device.find(condition.field) : nullptr;
  if (!field) return true;
  if (!condition.begins_with) return raw_number(device.record(), *field) != 0;
  return text_of(device.record(), *field).starts_with(condition.begins_with);
}

}  // namespace

const Field *Device::find(std::string_view name) const {
  const std::span<const Field> all = fields();
  const size_t row = mcserver::find_row(all, name);
  return row == all.size() ? nullptr : &all[row];
}

bool Device::is_known(const Field &field) const {
  return !is_none(record_, field) && holds(*this, field.meaning.only_if);
}

std::optional<int64_t> Device::number(const Field &field) const {
  if (!is_numeric(field) || !is_known(field)) return {};
  return static_cast<int64_t>(raw_number(record_, field));
}

std::string Device::text(const Field &field) const {
  if (!is_known(field)) return "none";
  if (field.type != mcserver::FieldType::kEntries) return text_of(record_, field);
  return entries_text(record_, field, raw_number(record_, *find(field.entries->count)));
}

std::string Device::text(std::string_view name) const {
  const Field *field = find(name);
  return field ? text(*field) : "";
}

std::vector<Record> Device::entries(const Field &field) const {
  return entries_of(record_, field, raw_number(record_, *find(field.entries->count)));
}

std::string Device::name() const { return std::string(kind_->prefix) + filled_in(kind_->device_name); }

std::string Device::place() const { return filled_in(kind_->place); }

bool Device::is_called(std::string_view word) const {
  if (word.empty()) return false;  // as the texts of some devices are
  if (word == name() || word == filled_in(kind_->device_name)) return true;
  return std::ranges::any_of(kind_->identity, [&](std::string_view name) {
    const Field *field = find(name);
    return field->type == mcserver::FieldType::kText && text_of(record_, *field) == word;
  });
}

std::string Device::identity() const {
  std::string key;
  for (const std::string_view name : kind_->identity) (key += text_of(record_, *find(name))) += '\0';
  return key;
}

std::string Device::filled_in(std::string_view pattern) const {
  std::string text;
  while (!pattern.empty()) {
    const size_t open = pattern.find('{');
    text += pattern.substr(0, open);
    if (open == pattern.npos) break;
    const size_t close = pattern.find('}', open);
    const std::string_view field = pattern.substr(open + 1, close - open - 1);
    text += field == kPosition ? std::to_string(position_) : this->text(field);
    pattern.remove_prefix(close + 1);
  }
  return text;
}

}  // namespace mcstore
