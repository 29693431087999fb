// What a field of a record is. A record's layout is written down once, as a table of these; the conversion to network
// byte order, the text dump and the columns of the command-line tool follow from it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace mcserver {

enum class FieldType : uint8_t {
  kUnsigned,
  kSigned,
  kText,          // NUL-padded; a text that fills its field has no NUL
  kFlag,          // one byte, true when it is not 0
  kInvertedFlag,  // the same, but a dump prints the opposite
  kStatus,        // one byte, shown as a word
  kAttachment,    // one byte, 1 for "Direct Attached" and anything else for "Expander Attached"
  kBytes,         // never converted; hexadecimal digits where it is printed at all
  kEntries,       // an array, whose entries have a table of their own
};

// What a number counts, as far as people would rather read it in another form.
enum class Unit : uint8_t {
  kNone,
  kBytes,
  kSeconds,
  kHours,
  kDays,
  kTimeStamp,  // seconds since 1970
};

enum class ByteOrder : uint8_t {
  kAsStored,
  kNetwork,  // big-endian in a reply
};

struct EntryTable;

struct Field {
  const char *name;
  size_t offset;
  size_t width;
  FieldType type;
  const char *label;  // the line of a text dump, with a printf conversion; null for a field that is not printed
  ByteOrder order;
  Unit unit = Unit::kNone;
  const EntryTable *entries = nullptr;
};

// What an array of a record consists of. The labels of its fields have a conversion for the entry's number first.
struct EntryTable {
  std::span<const Field> fields;
  size_t size;
  const char *count;  // the field that tells how many entries count
};

inline constexpr const char *kUnprinted = nullptr;

template <typename Member>
consteval FieldType field_type() {
  if (std::is_same_v<std::remove_extent_t<Member>, char>) return FieldType::kText;
  if (std::is_array_v<Member>) return FieldType::kBytes;
  return std::is_signed_v<Member> ? FieldType::kSigned : FieldType::kUnsigned;
}

// A member of a member is known by its own name.
consteval const char *own_name(const char *path) {
  const size_t last_dot = std::string_view(path).rfind('.');
  return last_dot == std::string_view::npos ? path : path + last_dot + 1;
}

template <typename Member>
consteval Field make_field(const char *path, size_t offset, const char *label) {
  const bool is_number = std::is_integral_v<Member> && sizeof(Member) > 1;
  return {own_name(path),       offset, sizeof(Member),
          field_type<Member>(), label,  is_number ? ByteOrder::kNetwork : ByteOrder::kAsStored};
}

// One row of a table.
#define FIELD(record, member, label) \
  ::mcserver::make_field<std::remove_reference_t<decltype(record::member)>>(#member, offsetof(record, member), label)

consteval Field flag(Field field) {
  field.type = FieldType::kFlag;
  return field;
}

consteval Field inverted_flag(Field field) {
  field.type = FieldType::kInvertedFlag;
  return field;
}

consteval Field status(Field field) {
  field.type = FieldType::kStatus;
  return field;
}

consteval Field attachment(Field field) {
  field.type = FieldType::kAttachment;
  return field;
}

// A number that stays in the byte order of the file.
consteval Field as_stored(Field field) {
  field.order = ByteOrder::kAsStored;
  return field;
}

consteval Field in(Unit unit, Field field) {
  field.unit = unit;
  return field;
}

constexpr Field entries(const EntryTable &table, Field field) {
  field.type = FieldType::kEntries;
  field.entries = &table;
  return field;
}

// Is the number passed to its label as a long? Its width differs from one machine to the other.
constexpr bool takes_long(std::string_view label) { return label.find("%ld") != label.npos; }

// The longest field whose bytes are printed.
inline constexpr size_t kMostPrintedBytes = 64;

// Does the conversion take an argument of the field's type?
consteval bool conversion_fits(const Field &field, std::string_view conversion) {
  switch (field.type) {
    case FieldType::kText:
    case FieldType::kFlag:
    case FieldType::kInvertedFlag:
    case FieldType::kStatus:
    case FieldType::kAttachment:
      return conversion.starts_with("s");
    case FieldType::kBytes:
      return conversion.starts_with("s") && field.width <= kMostPrintedBytes;
    case FieldType::kSigned:
      if (field.width == 4 && conversion.starts_with("ld")) return true;
      return (field.width == 1 || field.width == 4) && conversion.starts_with("d");
    case FieldType::kUnsigned:
      if (field.width == 8) return conversion.starts_with("lld") || conversion.starts_with("llx");
      return conversion.starts_with("d") || conversion.starts_with("x");
    default:
      return false;
  }
}

// Has the label nothing but conversions that fit, one or two, which show the same value?
consteval bool label_fits(const Field &field, std::string_view label) {
  size_t conversions = 0;
  for (size_t at = label.find('%'); at != label.npos; at = label.find('%', at + 1), ++conversions)
    if (!conversion_fits(field, label.substr(at + 1))) return false;
  return conversions == 1 || conversions == 2;
}

consteval bool label_fits(const Field &field) {
  if (field.label == nullptr) return field.type == FieldType::kBytes || field.type == FieldType::kEntries;
  return label_fits(field, field.label);
}

// Does the table cover the record from its first byte to its last, without a gap?
template <typename Record, size_t Rows>
consteval bool covers(const std::array<Field, Rows> &table) {
  size_t end = 0;
  for (const Field &field : table) {
    if (field.offset != end) return false;
    end += field.width;
  }
  return end == sizeof(Record);
}

// Does it, and does every label fit?
template <typename Record, size_t Rows>
consteval bool describes(const std::array<Field, Rows> &table) {
  for (const Field &field : table)
    if (!label_fits(field)) return false;
  return covers<Record>(table);
}

// The same for an entry of an array.
template <typename Entry, size_t Rows>
consteval bool describes_entry(const std::array<Field, Rows> &table) {
  size_t end = 0;
  for (const Field &field : table) {
    const std::string_view label = field.label;
    const size_t number = label.find("[%d]");
    if (field.offset != end || number == label.npos || !label_fits(field, label.substr(number + 4))) return false;
    end += field.width;
  }
  return end == sizeof(Entry);
}

void no_such_field();  // not constant, so that reaching it does not compile

// The row with this name, which the table must have.
template <size_t Rows>
consteval size_t row_of(const std::array<Field, Rows> &table, std::string_view name) {
  for (size_t row = 0; row < Rows; ++row)
    if (table[row].name == name) return row;
  no_such_field();
  return Rows;
}

// One table behind the other: for records that differ only in a part.
template <size_t... Rows>
consteval auto joined(const std::array<Field, Rows> &...tables) {
  std::array<Field, (Rows + ...)> all = {};
  size_t row = 0;
  const auto append = [&](const auto &table) {
    for (const Field &field : table) all[row++] = field;
  };
  (append(tables), ...);
  return all;
}

// The rows with these names, in this order: for what is shown in an order of its own.
template <size_t Rows, typename... Names>
consteval std::array<Field, sizeof...(Names)> rows_of(const std::array<Field, Rows> &table, Names... names) {
  return {table[row_of(table, names)]...};
}

}  // namespace mcserver
