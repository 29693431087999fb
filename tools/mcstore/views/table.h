// Tables as lsblk draws them: libsmartcols does.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct libscols_table;

namespace mcstore {

struct TableStyle {
  std::optional<size_t> width = {};  // the terminal's; without one nothing is cut
  bool has_colour = false;
  bool has_header = true;
};

class Table {
 public:
  enum class Fit {
    kWhole,
    kRight,  // whole, and aligned to the right
    kCut,    // where the table is wider than the terminal
    kWrap,   // the same, onto more lines
  };

  explicit Table(const TableStyle &style);

  void add_column(const std::string &heading, Fit fit);

  // A cell for each column. Whatever it holds, it is shown printable, and in that colour if it has one.
  struct Cell {
    std::string text;
    const char *colour = nullptr;  // an escape sequence
  };
  void add_line(const std::vector<Cell> &cells);

  std::string text() const;

 private:
  bool has_header_;
  std::unique_ptr<libscols_table, void (*)(libscols_table *)> table_;
};

}  // namespace mcstore
