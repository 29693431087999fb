// The fields of a record as text: what dumps and XML are made of.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "shared/compiled_rows.h"
#include "shared/enum_name.h"

namespace mcserver {

// A record in file byte order, or a summary entry, that is about to be shown. It is a copy with a NUL behind it: a text
// that fills its field runs on into the next one, and this keeps it from running out of the record.
template <typename Record>
class ShownRecord {
 public:
  explicit ShownRecord(const Record *record) { memcpy(bytes_, record, sizeof(Record)); }

  const uint8_t *bytes() const { return bytes_; }
  const char *text_at(size_t offset) const { return reinterpret_cast<const char *>(bytes_ + offset); }

 private:
  uint8_t bytes_[sizeof(Record) + 1] = {};
};

template <typename Number>
Number load(const uint8_t *bytes) {
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

// A value that an int holds, in a variable argument list, or whose bits it holds: %d and %x print both.
constexpr int as_int(uint32_t number) { return static_cast<int>(number); }

// Calls `use` with the value of a row, in the type that its conversion takes. The tables prove that labels and types
// fit. `record` is a ShownRecord's bytes; `names` are the words for a status.
template <typename Use>
void visit_value(const CompiledRow &row, const uint8_t *record, const char *const *names, Use use) {
  const uint8_t *bytes = record + row.offset;
  switch (row.shown) {
    case Shown::kUnsigned8:
      return use(as_int(*bytes));
    case Shown::kUnsigned16:
      return use(as_int(load<uint16_t>(bytes)));
    case Shown::kUnsigned32:
    case Shown::kSigned32:
      return use(as_int(load<uint32_t>(bytes)));
    case Shown::kUnsigned64:
      return use(load<unsigned long long>(bytes));
    case Shown::kSigned8:
      return use(static_cast<int>(load<int8_t>(bytes)));
    case Shown::kLong:
      return use(static_cast<long>(load<int32_t>(bytes)));
    case Shown::kText:
      return use(reinterpret_cast<const char *>(bytes));
    case Shown::kFlag:
      return use(*bytes ? "true" : "false");
    case Shown::kInvertedFlag:
      return use(*bytes ? "false" : "true");
    case Shown::kStatus:
      return use(name_or_empty(*bytes, names));
    case Shown::kAttachment:
      return use(*bytes == 1 ? "Direct Attached" : "Expander Attached");
    case Shown::kBytes:
      return use(HexDigits(bytes, row.width).c_str());
    case Shown::kNothing:
      return;
  }
}

// Prints each value through its label; a row without one prints nothing. A label may show its value twice.
void print_lines(FILE *stream, const Rows &lines, const uint8_t *record, const char *const *names = nullptr);

// Prints the entries of an array that begin at `entries` and are `size` bytes each, the first `count` of them.
void print_entries(FILE *stream, const Rows &lines, const uint8_t *entries, size_t size, size_t count);

}  // namespace mcserver
