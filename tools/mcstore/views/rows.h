// One device as people read it: a row for each of its fields, health first.
#pragma once

#include <string>

#include "mcstore/health/health.h"
#include "mcstore/kinds/device.h"
#include "mcstore/views/table.h"

namespace mcstore {

std::string device_rows(const Device &device, const Verdict &verdict, const TableStyle &style);

}  // namespace mcstore
