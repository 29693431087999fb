// What lists of devices show of each: columns, chosen for each kind in one table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/health/health.h"
#include "mcstore/kinds/device.h"
#include "mcstore/kinds/kind.h"

namespace mcstore {

// The columns that every kind has beside its fields.
inline constexpr std::string_view kDeviceColumn = "device";
inline constexpr std::string_view kHealthColumn = "health";

struct Column {
  std::string heading;
  std::string name;  // a field's, or one of the above
};

// The columns that people need.
std::vector<Column> chosen_columns(const Kind &kind);

// A column for every field, whichever of its variants the kind has it in.
std::vector<Column> every_column(const Kind &kind);

// The same without those that are too wide for a table: bytes and arrays.
std::vector<Column> all_columns(const Kind &kind);

// The column of this heading or name, whatever its case. Where a word is the heading of one column and the name of
// another, it is the heading as it is shown, in capitals, and the name otherwise.
std::optional<Column> find_column(const Kind &kind, std::string_view word);

// Is it read from right to left, as a number is?
bool is_right_aligned(const Kind &kind, const Column &column);

// What the column shows of a device; empty where the device does not have the field. Not yet printable.
std::string text_of(const Column &column, const Device &device, Health health);

}  // namespace mcstore
