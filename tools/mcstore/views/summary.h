// A survey on one screen: what needs attention first, then a line for each kind.
#pragma once

#include <string>

#include "mcstore/health/survey.h"
#include "mcstore/views/table.h"

namespace mcstore {

std::string summary(const Survey &survey, const TableStyle &style);

}  // namespace mcstore
