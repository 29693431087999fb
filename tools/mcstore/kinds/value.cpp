#include "mcstore/kinds/value.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/kinds/unit.h"

namespace mcstore {
namespace {

using mcserver::FieldType;

std::string text_at(Record record, const Field &field) {
  const Record bytes = bytes_of(record, field);
  return {bytes.begin(), std::find(bytes.begin(), bytes.end(), uint8_t{0})};
}

std::string flag_text(uint64_t flag) {
  return flag > 1 ? fmt::format("true ({})", flag) : fmt::format("{}", flag == 1);
}

std::string number_text(uint64_t number, const Field &field) {
  if (has_form(field.meaning.unit)) return in_unit(number, field.meaning.unit);
  if (field.meaning.base != mcserver::Base::kDecimal) return fmt::format("{:#x}", number);
  return field.type == FieldType::kSigned ? fmt::format("{}", static_cast<int64_t>(number)) : fmt::format("{}", number);
}

}  // namespace

Record bytes_of(Record record, const Field &field) { return record.subspan(field.offset, field.width); }

uint64_t raw_number(Record record, const Field &field) {
  const Record bytes = bytes_of(record, field);
  uint64_t number = 0;
  for (size_t i = bytes.size(); i > 0; --i) number = number << 8 | bytes[i - 1];
  if (field.type != FieldType::kSigned) return number;
  const auto unused_bits = static_cast<unsigned>(64 - 8 * field.width);
  return static_cast<uint64_t>(static_cast<int64_t>(number << unused_bits) >> unused_bits);
}

RawValue raw_value(Record record, const Field &field) {
  switch (field.type) {
    case FieldType::kText:
      return text_at(record, field);
    case FieldType::kBytes:
    case FieldType::kEntries:
      return hex_digits(bytes_of(record, field));
    case FieldType::kSigned:
      return static_cast<int64_t>(raw_number(record, field));
    default:
      return raw_number(record, field);
  }
}

bool is_none(Record record, const Field &field) {
  const auto &none = field.meaning.none;
  if (none.begin() == none.end()) return false;
  return std::find(none.begin(), none.end(), static_cast<int64_t>(raw_number(record, field))) != none.end();
}

const char *word_of(Record record, const Field &field) {
  const auto &words = field.meaning.words;
  if (words.empty()) return nullptr;
  const auto word = std::ranges::find(words, raw_number(record, field), &mcserver::Word::value);
  return word == words.end() ? nullptr : word->text;
}

std::string text_of(Record record, const Field &field) {
  if (is_none(record, field)) return "none";
  if (const char *word = word_of(record, field)) return word;
  switch (field.type) {
    case FieldType::kText:
      return text_at(record, field);
    case FieldType::kBytes:
    case FieldType::kEntries:
      return hex_digits(bytes_of(record, field));
    case FieldType::kAttachment:
      return raw_number(record, field) == 1 ? "directly" : "through an expander";
    case FieldType::kFlag:
    case FieldType::kInvertedFlag:
      return flag_text(raw_number(record, field));
    default:
      return number_text(raw_number(record, field), field);
  }
}

std::vector<Record> entries_of(Record record, const Field &field, size_t count) {
  const size_t size = field.entries->size;
  std::vector<Record> list(std::min(count, field.width / size));
  for (size_t i = 0; i < list.size(); ++i) list[i] = bytes_of(record, field).subspan(i * size, size);
  return list;
}

std::string entry_text(Record entry, const Field &field) {
  std::vector<std::string> parts;
  for (const Field &part : field.entries->fields) parts.push_back(text_of(entry, part));
  return joined(parts, "/");
}

std::string entries_text(Record record, const Field &field, size_t count) {
  constexpr size_t kMostShown = 8;
  std::vector<std::string> texts;
  for (const Record entry : entries_of(record, field, std::min(count, kMostShown)))
    texts.push_back(entry_text(entry, field));
  if (count > texts.size()) texts.push_back(fmt::format("... {} in all", count));
  return joined(texts, ", ");
}

size_t total_width(std::span<const Field> fields) {
  size_t width = 0;
  for (const Field &field : fields) width += field.width;
  return width;
}

std::string hex_digits(Record bytes) {
  constexpr char kHexDigits[] = "0123456789abcdef";
  std::string digits;
  digits.reserve(2 * bytes.size());
  for (const uint8_t byte : bytes) {
    digits += kHexDigits[byte >> 4];
    digits += kHexDigits[byte & 0xF];
  }
  return digits;
}

std::string joined(const std::vector<std::string> &parts, const char *separator) {
  std::string all;
  for (const std::string &part : parts) {
    if (&part != &parts.front()) all += separator;
    all += part;
  }
  return all;
}

}  // namespace mcstore
