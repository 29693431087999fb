#include "formats/field_tables.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>
#include <vector>

namespace formats {
namespace {

using mcserver::Base;
using mcserver::ByteOrder;
using mcserver::Field;
using mcserver::FieldType;
using mcserver::OnlyIf;
using mcserver::Unit;
using mcserver::Word;
using mcstore::Kind;

std::string_view type_name(FieldType type) {
  switch (type) {
    case FieldType::kUnsigned:
      return "unsigned";
    case FieldType::kSigned:
      return "signed";
    case FieldType::kText:
      return "text";
    case FieldType::kFlag:
      return "flag";
    case FieldType::kInvertedFlag:
      return "inverted flag";
    case FieldType::kStatus:
      return "status";
    case FieldType::kAttachment:
      return "attachment";
    case FieldType::kBytes:
      return "bytes";
    case FieldType::kEntries:
      return "array";
  }
  return "";
}

std::string_view unit_name(Unit unit) {
  switch (unit) {
    case Unit::kNone:
      return "";
    case Unit::kBytes:
      return "bytes";
    case Unit::kPercent:
      return "percent";
    case Unit::kSeconds:
      return "seconds";
    case Unit::kHours:
      return "hours";
    case Unit::kDays:
      return "days";
    case Unit::kTimeStamp:
      return "time stamp";
    case Unit::kCelsius:
      return "°C";
  }
  return "";
}

// In which records the field means something.
std::string only_if_text(const OnlyIf &only_if) {
  if (!only_if.begins_with) return fmt::format("only if `{}`", only_if.field);
  return fmt::format("only if `{}` begins with {}", only_if.field, only_if.begins_with);
}

// How the number is read, which values have a word, which stand for none, and when it means something at all.
std::string values(const Field &field) {
  std::vector<std::string> parts;
  if (field.meaning.base == Base::kHexadecimal) parts.emplace_back("hexadecimal");
  if (field.meaning.base == Base::kBitSet) parts.emplace_back("bit set");
  if (field.type != FieldType::kStatus)  // whose words have a table of their own
    for (const Word &word : field.meaning.words) parts.push_back(fmt::format("{} {}", word.value, word.text));
  for (const int64_t none : field.meaning.none) parts.push_back(fmt::format("{} = none", none));
  if (field.meaning.only_if.field) parts.push_back(only_if_text(field.meaning.only_if));
  return fmt::format("{}", fmt::join(parts, ", "));
}

// Only numbers of more than one byte have an order.
std::string_view order_in_reply(const Field &field) {
  if (!is_number(field) || field.width == 1) return "";
  return field.order == ByteOrder::kNetwork ? "big-endian" : "little-endian";
}

// A dump's line without its newline; nothing for a field that no dump prints.
std::string dump_line(const Field &field) {
  if (!field.label) return "";
  std::string_view label = field.label;
  while (label.ends_with('\n')) label.remove_suffix(1);
  while (label.ends_with(' ')) label.remove_suffix(1);
  return fmt::format("`{}`", label);
}

// A row, without the blanks that an empty cell would leave.
std::string row(const std::vector<std::string> &cells) {
  std::string text = "|";
  for (const std::string &cell : cells) text += cell.empty() ? " |" : fmt::format(" {} |", cell);
  return text + '\n';
}

std::string table_of(const std::vector<std::string> &columns) {
  std::string rule = "|";
  for (size_t i = 0; i < columns.size(); ++i) rule += "---|";
  return row(columns) + rule + '\n';
}

std::vector<std::string> place_and_type(const Field &field) {
  return {fmt::format("{}", field.offset), fmt::format("{}", field.width), std::string(type_name(field.type)),
          fmt::format("`{}`", field.name)};
}

std::string fields_table(const Kind &kind, std::span<const Field> fields) {
  const bool has_dump = !kind.store_path.empty();
  std::vector<std::string> columns = {"Offset", "Size", "Type", "Field", "Unit", "Values"};
  if (kind.layout) columns.emplace_back("In a reply");
  if (has_dump) columns.emplace_back("Line of a dump");
  std::string text = table_of(columns);
  for (const Field &field : fields) {
    std::vector<std::string> cells = place_and_type(field);
    cells.emplace_back(unit_name(field.meaning.unit));
    cells.push_back(values(field));
    if (kind.layout) cells.emplace_back(order_in_reply(field));
    if (has_dump) cells.push_back(dump_line(field));
    text += row(cells);
  }
  return text;
}

// What a header's field holds, as far as that follows from the kind.
std::vector<std::string> known_meaning(const Kind &kind, const Field &field) {
  if (!kind.layout) return {};
  if (field.name == std::string_view(kind.layout->count.name))
    return {fmt::format("the records that follow, modulo {}", modulus(field.width))};
  if (field.name == std::string_view(kind.layout->record_size.name)) return {fmt::format("{}", kind.record_size)};
  return {};
}

std::string note_item(std::string_view field, const std::string &note) {
  return list_item(fmt::format("`{}`: {}", field, note));
}

}  // namespace

std::string list_item(std::string_view text) {
  constexpr size_t kLongestLine = 120 - 2;  // the mark, and the indentation that follows from it, come first
  std::string item = "- ";
  while (text.size() > kLongestLine) {
    const size_t end = text.rfind(' ', kLongestLine);
    item += fmt::format("{}\n  ", text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return fmt::format("{}{}\n", item, text);
}

uint64_t modulus(size_t width) { return uint64_t{1} << (8 * width); }

std::string header_table(const Kind &kind, std::span<const Field> fields, Place place) {
  const bool is_reply = place == Place::kReplyHeader;
  std::vector<std::string> columns = {"Offset", "Size", "Type", "Field"};
  if (is_reply) columns.emplace_back("Byte order");
  columns.emplace_back("Content");
  std::string text = table_of(columns);
  for (const Field &field : fields) {
    std::vector<std::string> content = notes_about(kind, place, field.name);
    if (is_reply)
      for (std::string &known : known_meaning(kind, field)) content.push_back(std::move(known));
    std::vector<std::string> cells = place_and_type(field);
    if (is_reply) cells.emplace_back(order_in_reply(field));
    cells.push_back(fmt::format("{}", fmt::join(content, "; ")));
    text += row(cells);
  }
  return text;
}

std::string record_table(const Kind &kind, std::span<const Field> fields) {
  std::string text = fields_table(kind, fields);
  for (const Field &field : fields) {
    if (!field.entries) continue;
    text += fmt::format("\n`{}` has {} entries of {} bytes, of which the first `{}` count:\n\n", field.name,
                        field.width / field.entries->size, field.entries->size, field.entries->count);
    text += fields_table(kind, field.entries->fields);
  }
  return text;
}

std::string record_notes(const Kind &kind, std::span<const Field> fields) {
  std::string text;
  for (const Field &field : fields) {
    for (const std::string &note : notes_about(kind, Place::kRecord, field.name)) text += note_item(field.name, note);
    if (!field.entries) continue;
    for (const Field &part : field.entries->fields)
      for (const std::string &note : notes_about(kind, Place::kRecord, part.name)) text += note_item(part.name, note);
  }
  return text;
}

}  // namespace formats
