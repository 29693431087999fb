// Proofs at compile time that a table is right. What is wrong with it stands in the compiler's message: the name of a
// function that says what, and as its template argument the row.
#pragma once

#include <algorithm>
#include <limits>

#include "shared/field.h"

namespace mcserver {

// A row's name as a template argument, which compilers print.
struct RowName {
  char text[64] = {};

  consteval explicit RowName(std::string_view name) { std::ranges::copy(name, text); }
};

// Not constant: where a proof comes to one of these, the table does not compile.
template <RowName row>
void row_does_not_begin_where_the_row_before_it_ends();
template <RowName last_row>
void last_row_does_not_end_where_the_record_ends();
template <RowName row>
void label_has_conversions_that_do_not_fit_the_field();
template <RowName row>
void label_does_not_begin_with_the_number_of_the_entry();
template <RowName row>
void words_are_for_numbers_and_statuses_of_one_or_two_bytes();
template <RowName row>
void status_has_no_words();
template <RowName row>
void none_is_not_a_value_of_the_field();
template <RowName row>
void xml_form_does_not_fit_the_field();
template <RowName row>
void only_if_names_no_flag_or_text_of_the_table();
template <RowName row>
void row_has_no_xml_attribute();
template <RowName row>
void row_is_not_shown_once();

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

// Has the label nothing but conversions that fit, one or two, which show the same value, both as a long or neither?
consteval bool label_fits(const Field &field, std::string_view label) {
  size_t conversions = 0;
  size_t of_longs = 0;
  for (size_t at = label.find('%'); at != label.npos; at = label.find('%', at + 1), ++conversions) {
    if (!conversion_fits(field, label.substr(at + 1))) return false;
    if (label.substr(at + 1).starts_with("ld")) ++of_longs;
  }
  return (conversions == 1 || conversions == 2) && (of_longs == 0 || of_longs == conversions);
}

consteval bool label_fits(const Field &field) {
  if (field.label == nullptr) return field.type == FieldType::kBytes || field.type == FieldType::kEntries;
  return label_fits(field, field.label);
}

// The label of an array's field shows the entry's number first.
inline constexpr std::string_view kEntryNumber = "[%d]";

consteval bool has_entry_number(const Field &field) {
  const std::string_view label = field.label;
  return label.find(kEntryNumber) != label.npos && label.find('%') > label.find(kEntryNumber);
}

consteval bool entry_label_fits(const Field &field) {
  const std::string_view label = field.label;
  return label_fits(field, label.substr(label.find(kEntryNumber) + kEntryNumber.size()));
}

consteval bool none_fits(const Field &field) {
  if (field.meaning.none.begin() == field.meaning.none.end()) return true;
  if (!is_number(field) || field.width > 4) return false;
  const bool is_signed = field.type == FieldType::kSigned;
  const int64_t values = int64_t{1} << (8 * field.width);
  const int64_t least = is_signed ? -values / 2 : 0;
  return std::ranges::all_of(field.meaning.none, [&](int64_t none) { return none >= least && none < least + values; });
}

consteval bool words_fit(const Field &field) {
  const bool takes_words = field.type == FieldType::kStatus || (is_number(field) && field.width <= 2);
  return field.meaning.words.empty() || takes_words;
}

consteval bool has_words_if_a_status(const Field &field) {
  return field.type != FieldType::kStatus || !field.meaning.words.empty();
}

consteval bool xml_fits(const Field &field) {
  if (!field.meaning.xml.name) return true;
  const bool shows_number = field.meaning.xml.form != XmlForm::kText;
  const bool shows_text = field.type == FieldType::kText || field.type == FieldType::kStatus;
  return shows_number ? is_number(field) && field.width <= 4 : shows_text;
}

// Does the row's condition, if it has one, name a row of the table whose value can tell?
template <const auto &table>
consteval bool only_if_fits(const Field &field) {
  const auto [name, begins_with] = field.meaning.only_if;
  if (!name) return !begins_with;
  const size_t row = find_row(table, name);
  if (row == table.size() || table[row].name == std::string_view(field.name)) return false;
  const FieldType type = table[row].type;
  return begins_with ? type == FieldType::kText : type == FieldType::kFlag || type == FieldType::kInvertedFlag;
}

consteval bool has_xml(const Field &field) { return field.meaning.xml.name != nullptr; }

// The first row that does not hold; as many as there are rows when all do.
template <size_t Rows>
consteval size_t first_without(const std::array<Field, Rows> &table, bool (*holds)(const Field &)) {
  return static_cast<size_t>(std::ranges::find_if_not(table, holds) - table.begin());
}

// Comes to `complaint` with the name of the first row for which `holds` is not true.
#define MCS_PROVE_ROWS(table, holds, complaint)                                           \
  if constexpr (constexpr size_t row = first_without(table, holds); row < table.size()) { \
    complaint<RowName(table[row].name)>();                                                \
  }

template <size_t Rows>
consteval size_t first_behind_a_gap(const std::array<Field, Rows> &table) {
  size_t end = 0;
  for (size_t row = 0; row < Rows; ++row) {
    if (table[row].offset != end) return row;
    end += table[row].width;
  }
  return Rows;
}

// Proves that the table covers the record from its first byte to its last, without a gap.
template <typename Record, const auto &table>
consteval bool covers() {
  constexpr size_t row = first_behind_a_gap(table);
  if constexpr (row < table.size()) row_does_not_begin_where_the_row_before_it_ends<RowName(table[row].name)>();
  constexpr const Field &last = table.back();
  if constexpr (last.offset + last.width != sizeof(Record))
    last_row_does_not_end_where_the_record_ends<RowName(last.name)>();
  return true;
}

// Proves what rows say beside their labels.
template <const auto &table>
consteval bool means_something() {
  MCS_PROVE_ROWS(table, words_fit, words_are_for_numbers_and_statuses_of_one_or_two_bytes)
  MCS_PROVE_ROWS(table, has_words_if_a_status, status_has_no_words)
  MCS_PROVE_ROWS(table, none_fits, none_is_not_a_value_of_the_field)
  MCS_PROVE_ROWS(table, xml_fits, xml_form_does_not_fit_the_field)
  MCS_PROVE_ROWS(table, only_if_fits<table>, only_if_names_no_flag_or_text_of_the_table)
  return true;
}

// Proves all of that, and that every label fits.
template <typename Record, const auto &table>
consteval bool describes() {
  MCS_PROVE_ROWS(table, label_fits, label_has_conversions_that_do_not_fit_the_field)
  return covers<Record, table>() && means_something<table>();
}

// The same for an entry of an array.
template <typename Entry, const auto &table>
consteval bool describes_entry() {
  MCS_PROVE_ROWS(table, has_entry_number, label_does_not_begin_with_the_number_of_the_entry)
  MCS_PROVE_ROWS(table, entry_label_fits, label_has_conversions_that_do_not_fit_the_field)
  return covers<Entry, table>() && means_something<table>();
}

// Proves that XML can show each row.
template <const auto &table>
consteval bool makes_attributes() {
  MCS_PROVE_ROWS(table, has_xml, row_has_no_xml_attribute)
  return true;
}

#undef MCS_PROVE_ROWS

template <size_t Rows>
constexpr bool has_once(const std::array<Field, Rows> &shown, const Field &field) {
  return std::ranges::count(shown, field.offset, &Field::offset) == 1;
}

// Proves that lists which show a record in another order than its own have each printed row of the table, once.
template <const auto &table, const auto &...lists>
consteval bool is_shown_by() {
  constexpr size_t row = first_without(
      table, +[](const Field &field) { return field.label == nullptr || (has_once(lists, field) + ... + 0) == 1; });
  if constexpr (row < table.size()) row_is_not_shown_once<RowName(table[row].name)>();
  return true;
}

}  // namespace mcserver
