// What those who write inventories in JSON and those who read them agree on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shared/field.h"

namespace mcstore {

inline constexpr int kInventoryFormat = 2;

// Companions of a field stand beside it, under its key with one of these behind it: the word for its value, the number
// behind its null, and its bytes as the store file has them.
inline constexpr std::string_view kWordSuffix = "_text";
inline constexpr std::string_view kNoneSuffix = "_none";
inline constexpr std::string_view kHexSuffix = "_hex";

// The field's name; an entry of an array is "enclosure_sas_address_0", without brackets.
std::string key_of(std::string_view field_name);
inline std::string key_of(const mcserver::Field &field) { return key_of(field.name); }

// The number that null stands for; a negative one as its two's complement.
uint64_t number_of_null(const mcserver::Field &field);

}  // namespace mcstore
