#include "mcstore/value.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "mcstore/unit.h"

namespace mcstore {
namespace {

using mcserver::FieldType;

std::span<const uint8_t> bytes_of(std::span<const uint8_t> record, const Field &field) {
  return record.subspan(field.offset, field.width);
}

int64_t signed_at(std::span<const uint8_t> record, const Field &field, Endian endian) {
  const auto unused_bits = static_cast<unsigned>(64 - 8 * field.width);
  const uint64_t at_the_top = raw_number(record, field, endian) << unused_bits;
  return static_cast<int64_t>(at_the_top) >> unused_bits;
}

std::string text_at(std::span<const uint8_t> record, const Field &field) {
  const std::span<const uint8_t> bytes = bytes_of(record, field);
  return {bytes.begin(), std::find(bytes.begin(), bytes.end(), uint8_t{0})};
}

// The first `count` entries of an array, as far as there are so many.
std::vector<std::span<const uint8_t>> entries_of(std::span<const uint8_t> record, const Field &field, size_t count) {
  const size_t size = field.entries->size;
  std::vector<std::span<const uint8_t>> list(std::min(count, field.width / size));
  for (size_t i = 0; i < list.size(); ++i) list[i] = bytes_of(record, field).subspan(i * size, size);
  return list;
}

std::string hex_digits(std::span<const uint8_t> bytes) {
  std::string digits;
  for (const uint8_t byte : bytes) digits += fmt::format("{:02x}", byte);
  return digits;
}

}  // namespace

std::string printable(const std::string &text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F)
      result += c;
    else
      result += fmt::format("\\x{:02x}", byte);
  }
  return result;
}

std::string joined(const std::vector<std::string> &parts, const char *separator) {
  std::string all;
  for (const std::string &part : parts) {
    if (&part != &parts.front()) all += separator;
    all += part;
  }
  return all;
}

uint64_t raw_number(std::span<const uint8_t> record, const Field &field, Endian endian) {
  const std::span<const uint8_t> bytes = bytes_of(record, field);
  const bool is_big = endian == Endian::kBig && field.order == mcserver::ByteOrder::kNetwork;
  uint64_t number = 0;
  for (size_t i = 0; i < bytes.size(); ++i) number = number << 8 | bytes[is_big ? i : bytes.size() - 1 - i];
  return number;
}

RawValue raw_value(std::span<const uint8_t> record, const Field &field, Endian endian) {
  switch (field.type) {
    case FieldType::kText:
      return text_at(record, field);
    case FieldType::kBytes:
      return hex_digits(bytes_of(record, field));
    case FieldType::kSigned:
      return signed_at(record, field, endian);
    default:
      return raw_number(record, field, endian);
  }
}

std::string cell_text(std::span<const uint8_t> record, const Field &field, Endian endian) {
  switch (field.type) {
    case FieldType::kText:
      return printable(text_at(record, field));
    case FieldType::kBytes:
      return hex_digits(bytes_of(record, field));
    case FieldType::kSigned: {
      const int64_t number = signed_at(record, field, endian);
      return has_form(field.meaning.unit) ? in_unit(static_cast<uint64_t>(number), field.meaning.unit)
                                          : fmt::format("{}", number);
    }
    case FieldType::kAttachment:
      return raw_number(record, field, endian) == 1 ? "directly" : "through an expander";
    case FieldType::kFlag:
    case FieldType::kInvertedFlag: {
      const uint64_t flag = raw_number(record, field, endian);
      return flag > 1 ? fmt::format("true ({})", flag) : fmt::format("{}", flag == 1);
    }
    default: {
      const uint64_t number = raw_number(record, field, endian);
      if (has_form(field.meaning.unit)) return in_unit(number, field.meaning.unit);
      return field.meaning.base != mcserver::Base::kDecimal ? fmt::format("{:#x}", number) : fmt::format("{}", number);
    }
  }
}

std::vector<RawEntry> raw_entries(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian) {
  std::vector<RawEntry> list;
  for (const auto bytes : entries_of(record, field, count)) {
    RawEntry &entry = list.emplace_back();
    for (const Field &part : field.entries->fields) entry.push_back({part.name, raw_value(bytes, part, endian)});
  }
  return list;
}

std::string entries_text(std::span<const uint8_t> record, const Field &field, size_t count, Endian endian) {
  constexpr size_t kMostShown = 8;
  std::vector<std::string> texts;
  for (const auto entry : entries_of(record, field, std::min(count, kMostShown))) {
    std::vector<std::string> parts;
    for (const Field &part : field.entries->fields) parts.push_back(cell_text(entry, part, endian));
    texts.push_back(joined(parts, "/"));
  }
  if (count > texts.size()) texts.push_back(fmt::format("... {} in all", count));
  return joined(texts, ", ");
}

size_t total_width(std::span<const Field> fields) {
  size_t width = 0;
  for (const Field &field : fields) width += field.width;
  return width;
}

}  // namespace mcstore
