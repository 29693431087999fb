// The fields of a record as text: what dumps and XML are made of.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>

#include "shared/enum_name.h"
#include "shared/field.h"

namespace mcserver {

// A record in file byte order that is about to be shown. It is a copy with a NUL behind it: a text that fills its field
// runs on into the next one, and this keeps it from running out of the record.
template <typename Record>
class ShownRecord {
 public:
  explicit ShownRecord(const Record *record) { memcpy(bytes_, record, sizeof(Record)); }

  const uint8_t *bytes() const { return bytes_; }
  const char *text(const Field &field) const { return reinterpret_cast<const char *>(bytes_ + field.offset); }

 private:
  uint8_t bytes_[sizeof(Record) + 1] = {};
};

template <typename Number>
Number number_at(const uint8_t *bytes) {
  Number number;  // not aligned in the record
  memcpy(&number, bytes, sizeof number);
  return number;
}

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
      return use(number_at<int32_t>(bytes));
    case FieldType::kText:
      return use(reinterpret_cast<const char *>(bytes));
    case FieldType::kFlag:
      return use(*bytes ? "true" : "false");
    case FieldType::kInvertedFlag:
      return use(*bytes ? "false" : "true");
    case FieldType::kStatus:
      return use(name_or_empty(*bytes, names));
    case FieldType::kBytes:
      return;
  }
}

// Prints each field through its label; a field without one prints nothing.
void print_fields(FILE *stream, std::span<const Field> fields, const uint8_t *record,
                  const char *const *names = nullptr);
void print_field(FILE *stream, const Field &field, const uint8_t *record, const char *const *names = nullptr);

}  // namespace mcserver
