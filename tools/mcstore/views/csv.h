// Devices of one kind as comma-separated values, after RFC 4180.
#pragma once

#include <string>
#include <vector>

#include "mcstore/kinds/device.h"
#include "mcstore/views/columns.h"

namespace mcstore {

// The line with the columns' names.
std::string csv_header(const std::vector<Column> &columns);

// The line of a device. Texts are made printable, as for people: valid UTF-8 stays as it is where the locale has it,
// and nothing in a text can disturb a terminal or begin a line. One that a spreadsheet would take for a formula has an
// apostrophe in front.
std::string csv_line(const Device &device, Health health, const std::vector<Column> &columns);

}  // namespace mcstore
