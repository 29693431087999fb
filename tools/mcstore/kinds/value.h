// The value of a field in a record, for programs (raw) and for people (text). Records are as store files hold them:
// packed, their numbers little-endian.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "shared/field.h"

namespace mcstore {

using mcserver::Field;
using Record = std::span<const uint8_t>;

// A number, or a text, which may hold any bytes.
using RawValue = std::variant<uint64_t, int64_t, std::string>;

// Does the field hold one number, be it a code or a flag?
constexpr bool is_numeric(const Field &field) {
  using mcserver::FieldType;
  return field.type != FieldType::kText && field.type != FieldType::kBytes && field.type != FieldType::kEntries;
}

// The bytes of the field.
Record bytes_of(Record record, const Field &field);

// The number at the field's place, whatever its type; a negative one as its two's complement in 64 bits.
uint64_t raw_number(Record record, const Field &field);

// A number, a text up to its NUL, or a string of hexadecimal digits.
RawValue raw_value(Record record, const Field &field);

// Is this one of the values by which the field says that there is none?
bool is_none(Record record, const Field &field);

// The word for the field's value; null when it has none.
const char *word_of(Record record, const Field &field);

// The value as people read it: "none", codes as their words, flags as true or false, identifiers and bit sets in
// hexadecimal, sizes and times in their units. A text is as it is: whoever shows it makes it printable.
std::string text_of(Record record, const Field &field);

// The first `count` entries of an array, as far as there are so many.
std::vector<Record> entries_of(Record record, const Field &field, size_t count);

// An entry of that array as a text: its values with slashes between.
std::string entry_text(Record entry, const Field &field);

// The entries as a text: the first few of them.
std::string entries_text(Record record, const Field &field, size_t count);

// How many bytes these fields have together.
size_t total_width(std::span<const Field> fields);

std::string hex_digits(Record bytes);

// The parts, one behind the other, with separators between them.
std::string joined(const std::vector<std::string> &parts, const char *separator);

}  // namespace mcstore
