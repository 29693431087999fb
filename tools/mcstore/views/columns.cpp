#include "mcstore/views/columns.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "mcstore/kinds/nearest.h"

namespace mcstore {
namespace {

struct Heading {
  std::string_view text;
  std::string_view field;
};

struct KindHeadings {
  std::string_view kind;
  std::vector<Heading> headings;
};

// Behind the device's name and its health, and as many as fit beside them on most terminals: the status is left out
// where health says the same.
const std::vector<KindHeadings> &headings() {
  static const std::vector<KindHeadings> all = {
      {"controllers",
       {{"PLACE", "controller"},
        {"MODEL", "product_name"},
        {"SERIAL", "serial_number"},
        {"FIRMWARE", "firmware_version"},
        {"TEMP", "controller_temperature"}}},
      {"drives",
       {{"STATUS", "status_desc"},
        {"MODEL", "product_id"},
        {"SERIAL", "serial_num"},

        {"SIZE", "raw_size"},
        {"TYPE", "device_type"},

        {"TEMP", "temperature"}}},
      {"virtual-drives",
       {{"NAME", "name"},
        {"STATUS", "status"},
        {"RAID", "raid_level"},
        {"SIZE", "size"},
        {"DRIVES", "num_physical_drives"}}},
      {"bbus", {{"TYPE", "type"}, {"MODEL", "device_name"}, {"CHARGE", "charging_state"}, {"TEMP", "temperature"}}},
      {"nvme-controllers",
       {{"TYPE", "controller_type"},

        {"MODEL", "product_id"},
        {"FIRMWARE", "running_firmware_version"},
        {"DRIVES", "drive_count"},
        {"TEMP", "switch_temperature"}}},
      {"nvme-drives",
       {{"MODEL", "product_name"},
        {"SERIAL", "serial_number"},
        {"FIRMWARE", "firmware_version"},
        {"LIFE", "drive_life_used_percent"},
        {"TEMP", "temperature"}}},
  };
  return all;
}

std::string upper(std::string_view text) {
  std::string result(text);
  for (char &c : result)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return result;
}

Column column_named(std::string_view name) { return {.heading = upper(name), .name = std::string(name)}; }

std::vector<Column> columns_of_fields(const Kind &kind, bool (*is_wanted)(const Field &)) {
  std::vector<Column> columns = {column_named(kDeviceColumn), column_named(kHealthColumn)};
  for (const Field *field : every_field(kind))
    if (is_wanted(*field)) columns.push_back(column_named(field->name));
  return columns;
}

}  // namespace

std::vector<Column> chosen_columns(const Kind &kind) {
  std::vector<Column> columns = {column_named(kDeviceColumn), column_named(kHealthColumn)};
  const auto row = std::ranges::find(headings(), kind.name, &KindHeadings::kind);
  if (row == headings().end()) return columns;
  for (const auto &[text, field] : row->headings)
    columns.push_back({.heading = std::string(text), .name = std::string(field)});
  return columns;
}

std::vector<Column> every_column(const Kind &kind) {
  return columns_of_fields(kind, [](const Field &) { return true; });
}

std::vector<Column> all_columns(const Kind &kind) {
  return columns_of_fields(
      kind, [](const Field &field) { return is_numeric(field) || field.type == mcserver::FieldType::kText; });
}

std::optional<Column> find_column(const Kind &kind, std::string_view word) {
  std::vector<Column> columns = chosen_columns(kind);
  std::ranges::move(every_column(kind), std::back_inserter(columns));
  constexpr bool (*kFits[])(const Column &, std::string_view) = {
      [](const Column &column, std::string_view name) { return column.heading == name; },
      [](const Column &column, std::string_view name) { return equal_but_for_case(column.name, name); },
      [](const Column &column, std::string_view name) { return equal_but_for_case(column.heading, name); },
  };
  for (const auto fits : kFits)
    for (const Column &column : columns)
      if (fits(column, word)) return column;
  return {};
}

bool is_right_aligned(const Kind &kind, const Column &column) {
  const std::vector<const Field *> fields = every_field(kind);
  return std::ranges::any_of(fields, [&](const Field *field) {
    return field->name == column.name && is_number(*field) && field->meaning.words.empty();
  });
}

std::string text_of(const Column &column, const Device &device, Health health) {
  if (column.name == kDeviceColumn) return device.name();
  if (column.name == kHealthColumn) return word_for(health);
  return device.text(column.name);
}

}  // namespace mcstore
