// The fields of a record as text: what dumps and XML are made of.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>

#include "shared/enum_name.h"
#include "shared/field.h"

namespace mcserver {

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

// Calls `use` with the value of a field, in the type that the conversion in its label takes. The tables prove that
// labels and types fit. `record` is a ShownRecord's bytes; `names` are the words for a status.
template <typename Use>
void visit_value(const Field &field, const uint8_t *record, const char *const *names, Use use) {
  const uint8_t *bytes = record + field.offset;
  switch (field.type) {
    case FieldType::kUnsigned:
      if (field.width == 1) return use(*bytes);
      if (field.width == 2) return use(number_at<uint16_t>(bytes));
      if (field.width == 4) return use(number_at<uint32_t>(bytes));
      return use(number_at<unsigned long long>(bytes));
    case FieldType::kSigned:
      if (field.width == 1) return use(number_at<int8_t>(bytes));
      if (takes_long(field)) return use(static_cast<long>(number_at<int32_t>(bytes)));
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
      if (field.label) use(HexDigits(bytes, field.width).c_str());
      return;
    case FieldType::kEntries:
      return;
  }
}

// Prints each field through its label; a field without one prints nothing. A label may show its value twice.
void print_fields(FILE *stream, std::span<const Field> fields, const uint8_t *record,
                  const char *const *names = nullptr);
void print_field(FILE *stream, const Field &field, const uint8_t *record, const char *const *names = nullptr);

// Prints the first `count` entries of an array, as far as there are so many.
void print_entries(FILE *stream, const Field &array, const uint8_t *record, size_t count);

}  // namespace mcserver
