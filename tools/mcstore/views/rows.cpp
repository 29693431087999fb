#include "mcstore/views/rows.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/views/colour.h"

namespace mcstore {
namespace {

std::string bytes_text(Record bytes) {
  const bool is_empty = std::ranges::all_of(bytes, [](uint8_t byte) { return byte == 0; });
  return is_empty ? fmt::format("{} bytes, all 0", bytes.size()) : hex_digits(bytes);
}

std::string entry_text(Record entry, const Field &field) {
  std::vector<std::string> parts;
  for (const Field &part : field.entries->fields)
    parts.push_back(fmt::format("{} {}", part.name, text_of(entry, part)));
  return joined(parts, ", ");
}

void add_row(Table &table, const std::string &name, const std::string &value) {
  table.add_line({{.text = name}, {.text = value}});
}

void add_entries(Table &table, const Device &device, const Field &field) {
  const std::vector<Record> entries = device.entries(field);
  for (size_t i = 0; i < entries.size(); ++i)
    add_row(table, fmt::format("{}[{}]", field.name, i), entry_text(entries[i], field));
  if (entries.empty()) add_row(table, field.name, "none");
}

void add_field(Table &table, const Device &device, const Field &field) {
  if (field.entries) return add_entries(table, device, field);
  const bool is_bytes = field.type == mcserver::FieldType::kBytes;
  add_row(table, field.name, is_bytes ? bytes_text(bytes_of(device.record(), field)) : device.text(field));
}

}  // namespace

std::string device_rows(const Device &device, const Verdict &verdict, const TableStyle &style) {
  Table table(style);
  table.add_column("FIELD", Table::Fit::kWhole);
  table.add_column("VALUE", Table::Fit::kWrap);
  add_row(table, "device", device.name());
  table.add_line(
      {{.text = "health"},
       {.text = word_for(verdict.health), .colour = style.has_colour ? colour_of(verdict.health) : nullptr}});
  for (const std::string &reason : verdict.reasons) add_row(table, "reason", reason);
  for (const std::string &note : verdict.notes) add_row(table, "note", note);
  add_row(table, "place", device.place());
  for (const Field &field : device.fields()) add_field(table, device, field);
  return table.text();
}

}  // namespace mcstore
