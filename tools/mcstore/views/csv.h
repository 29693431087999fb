// Devices of one kind as comma-separated values, after RFC 4180.
#pragma once

#include <string>
#include <vector>

#include "mcstore/kinds/device.h"
#include "mcstore/views/columns.h"

namespace mcstore {

// The line with the columns' names.
std::string csv_header(const std::vector<Column> &columns);

// The line of a device. Texts are the same in every locale: UTF-8 stays as it is, but control characters, deceptive
// ones and bytes that are no character become \x1b and the like, so that nothing disturbs a terminal or begins a line.
// A backslash of the text itself is doubled. One that a spreadsheet would take for a formula has an apostrophe in
// front.
std::string csv_line(const Device &device, Health health, const std::vector<Column> &columns);

}  // namespace mcstore
