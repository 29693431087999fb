// What tells whether bytes are still the same.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace mcstore {

// In hexadecimal digits.
std::string sha256(std::span<const uint8_t> bytes);

}  // namespace mcstore
