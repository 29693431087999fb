// JSON that somebody has written by hand: whatever is wrong with it gets a message that says where.
#pragma once

#include <cstdint>
#include <string>

#include "mcstore/json/json.h"

namespace mcstore {

// Each of these throws InventoryError. `place` is the way to a value: "controllers.records[0].index".
[[noreturn]] void refuse(const std::string &place, const std::string &problem);
Json parse_json(const std::string &text);
const Json &as_object(const Json &json, const std::string &place);
std::string as_text(const Json &json, size_t longest, const std::string &place);  // without a NUL
// A negative number comes as its two's complement.
uint64_t as_number(const Json &json, int64_t smallest, uint64_t largest, const std::string &place);

}  // namespace mcstore
