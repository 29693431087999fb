// The value of a field in a record's bytes, for programs (JSON) and for people (text).
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "shared/field.h"

namespace mcstore {

using Json = nlohmann::ordered_json;
using mcserver::Field;

// The byte order of a record's numbers: files and simulated replies are little-endian, real replies big-endian.
enum class Endian { kLittle, kBig };

// The number at the field's place, whatever its type.
uint64_t number_at(std::span<const uint8_t> record, const Field &field, Endian endian);

// A number, a text up to its NUL, or a string of hexadecimal digits. A text may hold any bytes: dump_json() copes.
Json json_value(std::span<const uint8_t> record, const Field &field, Endian endian);

// The same for a table cell: flags as true or false, ids and bit sets in hexadecimal, sizes and times in the units that
// people use, nothing that disturbs a terminal.
std::string cell_text(std::span<const uint8_t> record, const Field &field, Endian endian);

// The first `count` entries of an array, each an object, or its values with slashes between them. A cell has the first
// few of them alone.
Json json_entries(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian);
std::string entries_text(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian);

// Text without what would disturb a terminal: other bytes than printable ASCII become \x1b and the like.
std::string printable(const std::string &text);

// Do people read this number in hexadecimal? Ids, bit sets and the like, as in the plug-in's own dumps.
bool is_hexadecimal(const Field &field);

// Valid JSON whatever bytes its texts hold: what is not UTF-8 becomes U+FFFD.
std::string dump_json(const Json &json);

}  // namespace mcstore
