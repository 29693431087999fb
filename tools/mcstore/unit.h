// Numbers in the units that people read them in.
#pragma once

#include <cstdint>
#include <string>

#include "shared/field.h"

namespace mcstore {

// "1.0 GiB", "2026-03-02 10:00:00 UTC", "8760 h (365 days)". A time that is not set is "none". Unit::kNone is a
// number like any other.
std::string in_unit(uint64_t number, mcserver::Unit unit);

}  // namespace mcstore
