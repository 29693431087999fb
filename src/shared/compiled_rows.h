// What is left of a table when it comes to printing: for each row a few numbers, and the texts behind one another in
// one array. A row without pointers needs no relocation when the plug-in is loaded, and takes a fraction of the room.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/field.h"
#include "shared/narrowed.h"

namespace mcserver {

// How the bytes of a field become a value that can be printed.
enum class Shown : uint8_t {
  kUnsigned8,
  kUnsigned16,
  kUnsigned32,
  kUnsigned64,
  kSigned8,
  kSigned32,
  kLong,  // four signed bytes, whose label takes a long
  kText,
  kFlag,
  kInvertedFlag,
  kStatus,
  kAttachment,
  kBytes,
  kNothing,
};

// Is the number passed to its label as a long? Its width differs from one machine to the other.
constexpr bool takes_long(std::string_view label) { return label.find("%ld") != label.npos; }

// `text` is what the value is printed through, as far as that decides.
consteval Shown shown_as(const Field &field, std::string_view text) {
  switch (field.type) {
    case FieldType::kUnsigned:
      return field.width == 1   ? Shown::kUnsigned8
             : field.width == 2 ? Shown::kUnsigned16
             : field.width == 4 ? Shown::kUnsigned32
                                : Shown::kUnsigned64;
    case FieldType::kSigned:
      if (field.width == 1) return Shown::kSigned8;
      return takes_long(text) ? Shown::kLong : Shown::kSigned32;
    case FieldType::kText:
      return Shown::kText;
    case FieldType::kFlag:
      return Shown::kFlag;
    case FieldType::kInvertedFlag:
      return Shown::kInvertedFlag;
    case FieldType::kStatus:
      return Shown::kStatus;
    case FieldType::kAttachment:
      return Shown::kAttachment;
    case FieldType::kBytes:
      return field.label ? Shown::kBytes : Shown::kNothing;
    case FieldType::kEntries:
      return Shown::kNothing;
  }
  return Shown::kNothing;
}

struct CompiledRow {
  uint16_t text;    // where it begins among the texts
  uint16_t offset;  // of the field in its record
  uint8_t width;    // of a field whose bytes are shown
  Shown shown;
  XmlForm form;  // of an attribute
};

// Rows, and their texts. It does not own them.
class Rows {
 public:
  constexpr Rows(const CompiledRow *rows, size_t count, const char *texts)
      : rows_(rows), count_(count), texts_(texts) {}

  constexpr const CompiledRow *begin() const { return rows_; }
  constexpr const CompiledRow *end() const { return rows_ + count_; }
  constexpr const char *text(const CompiledRow &row) const { return texts_ + row.text; }

  constexpr Rows first(size_t count) const { return {rows_, count, texts_}; }
  constexpr Rows from(size_t row) const { return {rows_ + row, count_ - row, texts_}; }
  constexpr Rows only(size_t row) const { return {rows_ + row, 1, texts_}; }

 private:
  const CompiledRow *rows_;
  size_t count_;
  const char *texts_;
};

template <size_t RowCount, size_t TextSize>
struct CompiledTable {
  std::array<CompiledRow, RowCount> rows = {};
  std::array<char, TextSize> texts = {};
};

// The texts that a row may have.
constexpr const char *label_of(const Field &field) { return field.label; }
constexpr const char *attribute_of(const Field &field) { return field.meaning.xml.name; }

template <const auto &table, auto text_of>
consteval auto compile() {
  constexpr size_t kTextSize = [] {
    size_t size = 0;
    for (const Field &field : table)
      if (const char *const text = text_of(field)) size += std::string_view(text).size() + 1;
    return size;
  }();
  static_assert(kTextSize <= UINT16_MAX);

  CompiledTable<table.size(), kTextSize> compiled;
  size_t used = 0;
  for (size_t row = 0; row < table.size(); ++row) {
    const Field &field = table[row];
    const bool is_short = field.width <= kMostPrintedBytes;
    const char *const text = text_of(field);
    compiled.rows[row] = {.text = narrowed<uint16_t>(used),
                          .offset = narrowed<uint16_t>(field.offset),
                          .width = narrowed<uint8_t>(is_short ? field.width : 0),
                          .shown = shown_as(field, text ? text : ""),
                          .form = field.meaning.xml.form};
    for (size_t at = 0; text && (at == 0 || text[at - 1] != '\0'); ++at) compiled.texts[used++] = text[at];
  }
  return compiled;
}

template <const auto &table, auto text_of>
inline constexpr auto kCompiled = compile<table, text_of>();

template <const auto &table, auto text_of>
inline constexpr Rows kRows = {kCompiled<table, text_of>.rows.data(), kCompiled<table, text_of>.rows.size(),
                               kCompiled<table, text_of>.texts.data()};

// The rows of a table in its order, with their labels, and with the names of their XML attributes.
template <const auto &table>
inline constexpr Rows lines_of = kRows<table, label_of>;
template <const auto &table>
inline constexpr Rows attributes_of = kRows<table, attribute_of>;

}  // namespace mcserver
