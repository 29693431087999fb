// The conversion of numbers from the byte order of the store files, which is the machine's, to the reply's.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>

#include "shared/field.h"

namespace mcserver {

static_assert(std::endian::native == std::endian::little, "store files are read in the byte order of the machine");

inline uint16_t to_big_endian(uint16_t value) { return __builtin_bswap16(value); }
inline uint32_t to_big_endian(uint32_t value) { return __builtin_bswap32(value); }

// Converts, in place, every field of the record that its table says is in network byte order.
inline void to_network_order(std::span<const Field> table, void *record) {
  for (const Field &field : table) {
    if (field.order != ByteOrder::kNetwork) continue;
    uint8_t *number = static_cast<uint8_t *>(record) + field.offset;
    std::reverse(number, number + field.width);
  }
}

}  // namespace mcserver
