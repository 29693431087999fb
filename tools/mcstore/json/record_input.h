// Records from JSON objects that name their fields.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "mcstore/json/json_input.h"
#include "mcstore/kinds/kind.h"

namespace mcstore {

// Stores a number in the field's bytes. Throws InventoryError, like all of these.
void store_number(const Json &value, const Field &field, std::span<uint8_t> record, const std::string &place);

// Stores what `object` says of the fields of a device; the bytes of what it leaves out stay as they are. A field's
// bytes go before its value, and the number behind a null before that.
void store_device(const Json &object, const Kind &kind, std::span<uint8_t> record, const std::string &place);

}  // namespace mcstore
