// The value of a field in a record's bytes, for programs (raw) and for people (text).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "shared/field.h"

namespace mcstore {

using mcserver::Field;

// The byte order of a record's numbers: files and simulated replies are little-endian, real replies big-endian.
enum class Endian { kLittle, kBig };

// A number, or a text, which may hold any bytes.
using RawValue = std::variant<uint64_t, int64_t, std::string>;

// An entry of an array: its fields in their order.
struct RawMember {
  std::string name;
  RawValue value;
};
using RawEntry = std::vector<RawMember>;

// The number at the field's place, whatever its type.
uint64_t raw_number(std::span<const uint8_t> record, const Field &field, Endian endian);

// A number, a text up to its NUL, or a string of hexadecimal digits.
RawValue raw_value(std::span<const uint8_t> record, const Field &field, Endian endian);

// The same for a table cell: flags as true or false, ids and bit sets in hexadecimal, sizes and times in the units that
// people use, nothing that disturbs a terminal.
std::string cell_text(std::span<const uint8_t> record, const Field &field, Endian endian);

// The first `count` entries of an array; in a cell the first few of them alone, each its values with slashes between.
std::vector<RawEntry> raw_entries(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian);
std::string entries_text(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian);

// How many bytes these fields have together.
size_t total_width(std::span<const Field> fields);

// Text without what would disturb a terminal: other bytes than printable ASCII become \x1b and the like.
std::string printable(const std::string &text);

// The parts, one behind the other, with separators between them.
std::string joined(const std::vector<std::string> &parts, const char *separator);

}  // namespace mcstore
