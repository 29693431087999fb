#include <fmt/core.h>

#include <algorithm>
#include <span>
#include <vector>

#include "mcstore/format.h"

namespace mcstore {
namespace {

using Column = std::vector<std::string>;
constexpr size_t kGap = 2;

size_t width_of(const Column &column) {
  size_t width = 0;
  for (const std::string &cell : column) width = std::max(width, cell.size());
  return width;
}

// The fields in the order in which devices bring them. Reserved bytes are of no use to people, and as wide as the
// table.
Column field_names(const ParsedReply &reply) {
  Column column = {""};
  for (const Device &device : reply.devices)
    for (const Value &value : device.values)
      if (value.text && std::find(column.begin(), column.end(), value.name) == column.end())
        column.push_back(value.name);
  return column;
}

Column device_column(const Kind &kind, const Device &device, const Column &names) {
  Column column = {device.text(kind.label)};
  for (size_t row = 1; row < names.size(); ++row) column.push_back(device.text(names[row]));
  return column;
}

std::string side_by_side(std::span<const Column> columns) {
  std::vector<size_t> widths;
  for (const Column &column : columns) widths.push_back(width_of(column));

  std::string text;
  for (size_t row = 0; row < columns.front().size(); ++row) {
    std::string line;
    for (size_t i = 0; i < columns.size(); ++i) line += fmt::format("{:<{}}", columns[i][row], widths[i] + kGap);
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

std::string shown(const RawValue &value) {
  if (const auto *text = std::get_if<std::string>(&value)) return printable(*text);
  if (const auto *number = std::get_if<int64_t>(&value)) return fmt::format("{}", *number);
  return fmt::format("{}", std::get<uint64_t>(value));
}

std::string headline(const Kind &kind, const ParsedReply &reply) {
  std::string line = fmt::format("{}: {}", kind.title, reply.devices.size());
  if (reply.state) line += ", subsystem state " + shown(*reply.state);
  if (reply.is_simulated) line += " (simulated)";
  return line + '\n';
}

}  // namespace

std::string format_table(const Kind &kind, const ParsedReply &reply, size_t width) {
  std::string text = headline(kind, reply);
  const Column names = field_names(reply);
  std::vector<Column> columns = {names};
  size_t used = width_of(names);
  for (const Device &device : reply.devices) {
    Column column = device_column(kind, device, names);
    const size_t needed = width_of(column) + kGap;
    if (columns.size() > 1 && used + needed > width) {
      text += '\n' + side_by_side(columns);
      columns = {names};
      used = width_of(names);
    }
    used += needed;
    columns.push_back(std::move(column));
  }
  if (columns.size() > 1) text += '\n' + side_by_side(columns);
  return text;
}

}  // namespace mcstore
