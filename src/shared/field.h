// What a field of a record is. A record's layout is written down once, as a table of these rows; the conversion to
// network byte order, the text dump, the XML and what the command-line tool and the documents say follow from it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
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
  kStatus,        // one byte, shown as one of its words
  kAttachment,    // one byte, 1 for "Direct Attached" and anything else for "Expander Attached"
  kBytes,         // never converted; hexadecimal digits where it is printed at all
  kEntries,       // an array, whose entries have a table of their own
};

enum class ByteOrder : uint8_t {
  kAsStored,
  kNetwork,  // big-endian in a reply
};

// What a number counts.
enum class Unit : uint8_t {
  kNone,
  kBytes,
  kPercent,
  kSeconds,
  kHours,
  kDays,
  kTimeStamp,  // seconds since 1970
  kCelsius,
};

// How people read a number.
enum class Base : uint8_t {
  kDecimal,
  kHexadecimal,  // an identifier
  kBitSet,       // in hexadecimal, too
};

// A value of a code, and the word for it.
struct Word {
  uint8_t value;
  const char *text;
};

// The values that stand for "none", two at most.
class NoneValues {
 public:
  constexpr NoneValues() = default;
  constexpr NoneValues(std::initializer_list<int64_t> values) {
    for (const int64_t value : values) values_[count_++] = value;
  }

  constexpr const int64_t *begin() const { return values_; }
  constexpr const int64_t *end() const { return values_ + count_; }

 private:
  int64_t values_[2] = {};
  size_t count_ = 0;
};

// The form of a value in XML.
enum class XmlForm : uint8_t {
  kText,
  kDecimal,
  kHexadecimal,
  kPrefixedHexadecimal,  // with 0x
};

struct XmlAttribute {
  const char *name = nullptr;  // null: XML does not show the field
  XmlForm form = XmlForm::kText;
};

// When a field means something: always, or only in the records whose field of this name is a flag that is set, or a
// text that begins so.
struct OnlyIf {
  const char *field = nullptr;
  const char *begins_with = nullptr;
};

// What a row says of its field beside its place, its type and its line in a dump; nothing of it is required.
struct Meaning {
  Unit unit = Unit::kNone;
  Base base = Base::kDecimal;
  std::span<const Word> words = {};  // as far as values have one; the others are shown as numbers
  NoneValues none = {};
  XmlAttribute xml = {};
  OnlyIf only_if = {};
};

struct EntryTable;

struct Field {
  const char *name;
  size_t offset;
  size_t width;
  FieldType type;
  const char *label;  // the line of a text dump, with a printf conversion; null for a field that is not printed
  ByteOrder order;
  Meaning meaning = {};
  const EntryTable *entries = nullptr;
};

// What an array of a record consists of. The labels of its fields have a conversion for the entry's number first.
struct EntryTable {
  std::span<const Field> fields;
  size_t size;
  const char *count;  // the field that tells how many entries count
};

inline constexpr const char *kUnprinted = nullptr;

// The longest field whose bytes are printed.
inline constexpr size_t kMostPrintedBytes = 64;

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
consteval Field make_field(const char *path, size_t offset, const char *label, Meaning meaning = {}) {
  const bool is_number = std::is_integral_v<Member> && sizeof(Member) > 1;
  return {own_name(path), offset,
          sizeof(Member), field_type<Member>(),
          label,          is_number ? ByteOrder::kNetwork : ByteOrder::kAsStored,
          meaning};
}

// One row of a table: the member, its line in a dump, and what else there is to say of it.
//
//   FIELD(StorFanInfo, speed, "speed: 0x%x\n", {.base = Base::kHexadecimal, .none = {0}})
#define FIELD(record, member, ...)                                                                             \
  ::mcserver::make_field<std::remove_reference_t<decltype(record::member)>>(#member, offsetof(record, member), \
                                                                            __VA_ARGS__)

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

constexpr Field entries(const EntryTable &table, Field field) {
  field.type = FieldType::kEntries;
  field.entries = &table;
  return field;
}

constexpr bool is_number(const Field &field) {
  return field.type == FieldType::kUnsigned || field.type == FieldType::kSigned;
}

// The row with this name; as many as there are rows when there is none.
constexpr size_t find_row(std::span<const Field> table, std::string_view name) {
  size_t row = 0;
  while (row < table.size() && table[row].name != name) ++row;
  return row;
}

void no_such_field();  // not constant, so that reaching it does not compile

// The row with this name, which the table must have.
consteval size_t row_of(std::span<const Field> table, std::string_view name) {
  const size_t row = find_row(table, name);
  if (row == table.size()) no_such_field();
  return row;
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
consteval std::array<Field, sizeof...(Names)> rows_named(const std::array<Field, Rows> &table, Names... names) {
  return {table[row_of(table, names)]...};
}

}  // namespace mcserver
