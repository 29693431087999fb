// Bytes as they came, in hexadecimal.
#pragma once

#include <string>

#include "mcstore/kinds/value.h"

namespace mcstore {

std::string hex_dump(Record bytes);

}  // namespace mcstore
