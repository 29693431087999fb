#include "mcstore/views/selection.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "mcstore/kinds/nearest.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/views/columns.h"

namespace mcstore {
namespace {

// The number that the text is, in decimal or, behind 0x, in hexadecimal; a negative one as its two's complement.
std::optional<uint64_t> number_in(std::string_view text) {
  const bool is_hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  const bool is_negative = text.starts_with('-');
  const std::string_view digits = text.substr(is_hexadecimal ? 2 : is_negative ? 1 : 0);
  uint64_t number = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, is_hexadecimal ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size()) return {};
  return is_negative ? ~number + 1 : number;
}

Health health_of(const Column &column, const Device &device, const Judge &judge) {
  return column.name == kHealthColumn ? judge.judge(device).health : Health::kOk;
}

bool passes(const Filter &filter, const Device &device, const Judge &judge) {
  const std::optional<Column> column = find_column(device.kind(), filter.column);
  if (!column) return false;
  if (equal_but_for_case(printable(text_of(*column, device, health_of(*column, device, judge))), filter.value))
    return true;
  const Field *field = device.find(column->name);
  const std::optional<int64_t> number = field ? device.number(*field) : std::nullopt;
  return number && number_in(filter.value) == static_cast<uint64_t>(*number);
}

// What a device is sorted by: the number first, then the text.
struct SortKey {
  uint64_t number = 0;
  std::string text = {};

  bool operator<(const SortKey &other) const {
    return number != other.number ? number < other.number : strverscmp(text.c_str(), other.text.c_str()) < 0;
  }
};

// Moves the negative numbers in front of the others.
uint64_t in_order(const Field &field, int64_t number) {
  const auto bits = static_cast<uint64_t>(number);
  return field.type == mcserver::FieldType::kSigned ? bits ^ (uint64_t{1} << 63) : bits;
}

SortKey key_of(const Column &column, const Device &device, const Judge &judge) {
  if (column.name == kHealthColumn)
    return {.number = static_cast<uint64_t>(Health::kCritical) - static_cast<uint64_t>(judge.judge(device).health)};
  const Field *field = device.find(column.name);
  if (!field || !is_numeric(*field)) return {.text = text_of(column, device, Health::kOk)};
  const std::optional<int64_t> number = device.number(*field);
  return {.number = number ? in_order(*field, *number) : UINT64_MAX};  // the unknown ones last
}

void sort(std::vector<size_t> &positions, const Column &column, const KindInventory &inventory, const Judge &judge) {
  std::vector<std::pair<SortKey, size_t>> keys;
  keys.reserve(positions.size());
  for (const size_t position : positions)
    keys.emplace_back(key_of(column, inventory.device(position), judge), position);
  std::ranges::stable_sort(keys, std::less<>(), &std::pair<SortKey, size_t>::first);
  std::ranges::transform(keys, positions.begin(), &std::pair<SortKey, size_t>::second);
}

}  // namespace

std::optional<Filter> Filter::parse(std::string_view text) {
  const size_t equals = text.find('=');
  if (equals == text.npos || equals == 0) return {};
  return Filter{.column = std::string(text.substr(0, equals)), .value = std::string(text.substr(equals + 1))};
}

std::vector<size_t> select(const KindInventory &inventory, const Selection &selection, const Judge &judge) {
  const auto is_chosen = [&](const Device &device) {
    return (selection.devices.empty() ||
            std::ranges::any_of(selection.devices, [&](const std::string &word) { return device.is_called(word); })) &&
           std::ranges::all_of(selection.filters, [&](const Filter &filter) { return passes(filter, device, judge); });
  };
  std::vector<size_t> positions;
  for (size_t i = 0; i < inventory.size(); ++i)
    if (is_chosen(inventory.device(i))) positions.push_back(i);
  const std::optional<Column> column = find_column(*inventory.kind, selection.sort);
  if (column) sort(positions, *column, inventory, judge);
  return positions;
}

}  // namespace mcstore
