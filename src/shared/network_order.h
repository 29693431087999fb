// The conversion of numbers from the byte order of the store files, which is the machine's, to the reply's.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>

#include "shared/field.h"
#include "shared/narrowed.h"

namespace mcserver {

static_assert(std::endian::native == std::endian::little, "store files are read in the byte order of the machine");

inline uint16_t to_big_endian(uint16_t value) { return __builtin_bswap16(value); }
inline uint32_t to_big_endian(uint32_t value) { return __builtin_bswap32(value); }

// Where a number stands in a record: what is left of a table when it comes to converting.
struct NumberPlace {
  uint16_t offset;
  uint16_t width;
};

template <const auto &table>
consteval auto places_in_network_order() {
  std::array<NumberPlace, std::ranges::count(table, ByteOrder::kNetwork, &Field::order)> places = {};
  size_t filled = 0;
  for (const Field &field : table)
    if (field.order == ByteOrder::kNetwork)
      places[filled++] = {narrowed<uint16_t>(field.offset), narrowed<uint16_t>(field.width)};
  return places;
}

template <const auto &table>
inline constexpr auto kPlacesInNetworkOrder = places_in_network_order<table>();

inline void reverse_numbers(std::span<const NumberPlace> places, void *record) {
  for (const NumberPlace &place : places) {
    uint8_t *number = static_cast<uint8_t *>(record) + place.offset;
    std::reverse(number, number + place.width);
  }
}

// Converts, in place, every field of the record that its table says is in network byte order.
template <const auto &table>
void to_network_order(void *record) {
  reverse_numbers(kPlacesInNetworkOrder<table>, record);
}

}  // namespace mcserver
