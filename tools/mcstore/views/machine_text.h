// The value of a field as programs read it, in formats that have texts alone.
#pragma once

#include <string>

#include "mcstore/kinds/device.h"

namespace mcstore {

// Numbers without words and units: decimal, identifiers and bit sets in hexadecimal. The entries of an array with
// blanks between them, the parts of an entry with slashes. Empty where the field means nothing. Not yet printable.
std::string machine_text(const Device &device, const Field &field);

}  // namespace mcstore
