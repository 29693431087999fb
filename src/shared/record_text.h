// The fields of a record as text: what dumps and XML are made of.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>

#include "shared/enum_name.h"
#include "shared/field.h"

namespace mcserver {

// What is left of a row when it comes to printing. A name is for people who write inventories, not for the plug-in: as
// a pointer, it would cost as much room as the rest, and every pointer must be relocated when the plug-in is loaded.
struct Line {
  const char *label;
  uint16_t offset;
  uint16_t width;
  FieldType type;
};

constexpr Line line_of(const Field &field) {
  return {field.label, static_cast<uint16_t>(field.offset), static_cast<uint16_t>(field.width), field.type};
}

template <const auto &table>
consteval auto make_lines() {
  std::array<Line, table.size()> lines = {};
  std::ranges::transform(table, lines.begin(), line_of);
  return lines;
}

// The lines of a table, in its order.
template <const auto &table>
inline constexpr auto lines_of = make_lines<table>();

// A record in file byte order, or a summary entry, that is about to be shown. It is a copy with a NUL behind it: a text
// that fills its field runs on into the next one, and this keeps it from running out of the record.
template <typename Record>
class ShownRecord {
 public:
  explicit ShownRecord(const Record *record) { memcpy(bytes_, record, sizeof(Record)); }

  const uint8_t *bytes() const { return bytes_; }
  const char *text(const Field &field) const { return text_at(field.offset); }
  const char *text_at(size_t offset) const { return reinterpret_cast<const char *>(bytes_ + offset); }

 private:
  uint8_t bytes_[sizeof(Record) + 1] = {};
};

template <typename Number>
Number number_at(const uint8_t *bytes) {
  Number number;  // not aligned in the record
  memcpy(&number, bytes, sizeof number);
  return number;
}

// Bytes as lower-case hexadecimal digits.
class HexDigits {
 public:
  HexDigits(const uint8_t *bytes, size_t count) {
    for (size_t i = 0; i < count; ++i) snprintf(digits_ + 2 * i, 3, "%02x", bytes[i]);
  }
  const char *c_str() const { return digits_; }

 private:
  char digits_[2 * kMostPrintedBytes + 1] = {};
};

// Calls `use` with the value of a line, in the type that the conversion in its label takes. The tables prove that
// labels and types fit. `record` is a ShownRecord's bytes; `names` are the words for a status.
template <typename Use>
void visit_value(const Line &line, const uint8_t *record, const char *const *names, Use use) {
  const uint8_t *bytes = record + line.offset;
  switch (line.type) {
    case FieldType::kUnsigned:
      if (line.width == 1) return use(*bytes);
      if (line.width == 2) return use(number_at<uint16_t>(bytes));
      if (line.width == 4) return use(number_at<uint32_t>(bytes));
      return use(number_at<unsigned long long>(bytes));
    case FieldType::kSigned:
      if (line.width == 1) return use(number_at<int8_t>(bytes));
      if (takes_long(line.label)) return use(static_cast<long>(number_at<int32_t>(bytes)));
      return use(number_at<int32_t>(bytes));
    case FieldType::kText:
      return use(reinterpret_cast<const char *>(bytes));
    case FieldType::kFlag:
      return use(*bytes ? "true" : "false");
    case FieldType::kInvertedFlag:
      return use(*bytes ? "false" : "true");
    case FieldType::kStatus:
      return use(name_or_empty(*bytes, names));
    case FieldType::kAttachment:
      return use(*bytes == 1 ? "Direct Attached" : "Expander Attached");
    case FieldType::kBytes:
      if (line.label) use(HexDigits(bytes, line.width).c_str());
      return;
    case FieldType::kEntries:
      return;
  }
}

// Prints each value through its label; a line without one prints nothing. A label may show its value twice.
void print_lines(FILE *stream, std::span<const Line> lines, const uint8_t *record, const char *const *names = nullptr);
void print_line(FILE *stream, const Line &line, const uint8_t *record, const char *const *names = nullptr);

// Prints the first `count` entries of an array, as far as there are so many.
void print_entries(FILE *stream, const Field &array, const uint8_t *record, size_t count);

}  // namespace mcserver
