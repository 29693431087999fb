// A kind as people read it: a line that says how many devices there are, what else there is to know of them, and a line
// for each.
#pragma once

#include <string>
#include <vector>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/views/columns.h"
#include "mcstore/views/table.h"

namespace mcstore {

// "Physical drives: 4", and a line for each thing that makes them less than that.
std::string title_lines(const KindInventory &inventory, size_t shown);

// What must be said of the kind itself: "damaged: ...", "note: ...". Not yet printable.
std::vector<std::string> remarks(const KindInventory &inventory);

// A line for each of the devices at these positions.
std::string device_list(const KindInventory &inventory, const std::vector<size_t> &positions,
                        const std::vector<Column> &columns, const Judge &judge, const TableStyle &style);

}  // namespace mcstore
