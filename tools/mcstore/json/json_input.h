// JSON that somebody has written by hand: whatever is wrong with it gets a message that says where.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "mcstore/json/inventory_error.h"
#include "mcstore/json/json.h"

namespace mcstore {

// Each of these throws InventoryError. `place` is the way to a value: "controllers.devices[0].fields.index".
[[noreturn]] void refuse(const std::string &place, const std::string &problem);
Json parse_json(const std::string &text);
const Json &as_object(const Json &json, const std::string &place);
const Json &as_array(const Json &json, const std::string &place);
void refuse_other_keys(const Json &object, std::initializer_list<std::string_view> keys, const std::string &place);
std::string as_text(const Json &json, size_t longest, const std::string &place);  // without a NUL
// A negative number comes as its two's complement.
uint64_t as_number(const Json &json, int64_t smallest, uint64_t largest, const std::string &place);

// The way to a member; `place` is empty for one of the document itself.
std::string member_of(const std::string &place, std::string_view key);

}  // namespace mcstore
