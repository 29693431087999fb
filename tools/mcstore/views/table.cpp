#include "mcstore/views/table.h"

#include <libsmartcols/libsmartcols.h>

#include <cstdlib>
#include <new>

#include "mcstore/kinds/printable.h"

namespace mcstore {
namespace {

// Nothing else goes wrong in the library.
void require(bool has_memory) {
  if (!has_memory) throw std::bad_alloc();
}

int flags_of(Table::Fit fit) {
  switch (fit) {
    case Table::Fit::kRight:
      return SCOLS_FL_RIGHT;
    case Table::Fit::kCut:
      return SCOLS_FL_TRUNC;
    case Table::Fit::kWrap:
      return SCOLS_FL_WRAP;
    default:
      return 0;
  }
}

}  // namespace

Table::Table(const TableStyle &style) : has_header_(style.has_header), table_(scols_new_table(), scols_unref_table) {
  require(table_ != nullptr);
  scols_table_enable_noencoding(table_.get(), 1);  // cells are printable, and escapes are not to be escaped again
  scols_table_enable_noheadings(table_.get(), style.has_header ? 0 : 1);
  scols_table_enable_colors(table_.get(), style.has_colour ? 1 : 0);
  scols_table_set_termforce(table_.get(), style.width ? SCOLS_TERMFORCE_ALWAYS : SCOLS_TERMFORCE_NEVER);
  if (style.width) scols_table_set_termwidth(table_.get(), *style.width);
}

void Table::add_column(const std::string &heading, Fit fit) {
  const char *name = has_header_ ? heading.c_str() : "";  // one that is not shown would still take its width
  require(scols_table_new_column(table_.get(), name, 0, flags_of(fit)) != nullptr);
}

void Table::add_line(const std::vector<Cell> &cells) {
  libscols_line *line = scols_table_new_line(table_.get(), nullptr);
  require(line != nullptr);
  for (size_t i = 0; i < cells.size(); ++i) {
    libscols_cell *cell = scols_line_get_cell(line, i);
    require(scols_cell_set_data(cell, printable(cells[i].text).c_str()) == 0);
    if (cells[i].colour) require(scols_cell_set_color(cell, cells[i].colour) == 0);
  }
}

std::string Table::text() const {
  if (scols_table_get_ncols(table_.get()) == 0) return {};  // which the library does not print
  char *data = nullptr;
  require(scols_print_table_to_string(table_.get(), &data) == 0);
  const std::unique_ptr<char, void (*)(void *)> owned(data, free);
  return data ? std::string(data) + '\n' : "";  // the library leaves out the last line end
}

}  // namespace mcstore
