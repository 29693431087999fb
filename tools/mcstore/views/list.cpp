#include "mcstore/views/list.h"

#include <fmt/core.h>

#include "mcstore/kinds/printable.h"
#include "mcstore/views/colour.h"

namespace mcstore {
namespace {

std::string count_text(const KindInventory &inventory, size_t shown) {
  if (inventory.status == KindStatus::kAbsent) return "none";
  if (inventory.status == KindStatus::kUnreadable) return word_for(inventory.status);
  if (shown == inventory.size()) return fmt::format("{}", shown);
  return fmt::format("{} of {}", shown, inventory.size());
}

Table::Fit fit_of(const Kind &kind, const Column &column) {
  if (column.name == kDeviceColumn || column.name == kHealthColumn) return Table::Fit::kWhole;
  return is_right_aligned(kind, column) ? Table::Fit::kRight : Table::Fit::kCut;
}

}  // namespace

std::vector<std::string> remarks(const KindInventory &inventory) {
  std::vector<std::string> lines;
  if (inventory.has_data() && inventory.status != KindStatus::kFine)
    lines.push_back(fmt::format("{}: {}", word_for(inventory.status), inventory.error));
  if (inventory.status == KindStatus::kUnreadable) lines.push_back(inventory.error);
  for (const std::string &note : inventory.notes) lines.push_back("note: " + note);
  return lines;
}

std::string title_lines(const KindInventory &inventory, size_t shown) {
  std::string text = fmt::format("{}: {}", inventory.kind->title, count_text(inventory, shown));
  if (inventory.state) text += fmt::format(", subsystem {}", state_text(inventory));
  text += '\n';
  for (const std::string &line : remarks(inventory)) text += fmt::format("  {}\n", printable(line));
  return text;
}

std::string device_list(const KindInventory &inventory, const std::vector<size_t> &positions,
                        const std::vector<Column> &columns, const Judge &judge, const TableStyle &style) {
  if (positions.empty()) return {};
  Table table(style);
  for (const Column &column : columns) table.add_column(column.heading, fit_of(*inventory.kind, column));
  for (const size_t position : positions) {
    const Device device = inventory.device(position);
    const Health health = judge.judge(device).health;
    std::vector<Table::Cell> cells;
    for (const Column &column : columns) {
      const bool has_colour = style.has_colour && column.name == kHealthColumn;
      cells.push_back({.text = text_of(column, device, health), .colour = has_colour ? colour_of(health) : nullptr});
    }
    table.add_line(cells);
  }
  return table.text();
}

}  // namespace mcstore
