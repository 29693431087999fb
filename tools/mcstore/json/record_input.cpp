#include "mcstore/json/record_input.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <map>

#include "mcstore/json/inventory_format.h"
#include "mcstore/kinds/value.h"

namespace mcstore {
namespace {

using mcserver::Base;
using mcserver::FieldType;

// ----------------------------------------------------------------------------------------- values

void put_number(uint64_t number, const Field &field, std::span<uint8_t> record) {
  for (size_t i = 0; i < field.width; ++i) record[field.offset + i] = static_cast<uint8_t>(number >> (8 * i));
}

// The number that stands as "0x1000" in a string; as it is, if it is another value.
Json without_prefix(const Json &value, const std::string &place) {
  if (!value.is_string()) return value;
  const auto text = value.get<std::string>();
  uint64_t number = 0;
  const bool is_prefixed = text.starts_with("0x") && text.size() > 2;
  const auto result = std::from_chars(text.data() + (is_prefixed ? 2 : 0), text.data() + text.size(), number, 16);
  if (!is_prefixed || result.ec != std::errc() || result.ptr != text.data() + text.size())
    refuse(place, "must be a whole number, or a string such as \"0x1000\"");
  return number;
}

void store_text(const Json &value, std::span<uint8_t> bytes, const std::string &place) {
  const std::string text = as_text(value, bytes.size(), place);  // one that fills its field has no terminator
  std::ranges::fill(bytes, uint8_t{0});
  std::ranges::copy(text, bytes.begin());
}

void store_bytes(const Json &value, std::span<uint8_t> bytes, const std::string &place) {
  const std::string digits = value.is_string() ? value.get<std::string>() : "not hexadecimal";
  if (digits.size() % 2 != 0 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
    refuse(place, "must be a string of pairs of hexadecimal digits");
  if (digits.size() / 2 > bytes.size())
    refuse(place, fmt::format("is {} bytes long: at most {} fit", digits.size() / 2, bytes.size()));
  std::ranges::fill(bytes, uint8_t{0});
  for (size_t i = 0; i < digits.size() / 2; ++i)
    std::from_chars(digits.data() + 2 * i, digits.data() + 2 * i + 2, bytes[i], 16);
}

void store_fields(const Json &object, std::span<const Field> fields, std::span<uint8_t> record,
                  const std::string &place);

void store_entries(const Json &list, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  const size_t size = field.entries->size;
  if (as_array(list, place).size() > field.width / size)
    refuse(place, fmt::format("has {} entries: at most {} fit", list.size(), field.width / size));
  for (size_t i = 0; i < list.size(); ++i)
    store_fields(list[i], field.entries->fields, bytes.subspan(i * size, size), fmt::format("{}[{}]", place, i));
}

void store_null(const Field &field, std::span<uint8_t> record) {
  std::ranges::fill(record.subspan(field.offset, field.width), uint8_t{0});
  if (is_numeric(field)) put_number(number_of_null(field), field, record);
}

void store_value(const Json &value, const Field &field, std::span<uint8_t> record, const std::string &place) {
  const std::span<uint8_t> bytes = record.subspan(field.offset, field.width);
  if (value.is_null()) return store_null(field, record);
  switch (field.type) {
    case FieldType::kText:
      return store_text(value, bytes, place);
    case FieldType::kBytes:
      return store_bytes(value, bytes, place);
    case FieldType::kEntries:
      return store_entries(value, field, bytes, place);
    case FieldType::kFlag:
    case FieldType::kInvertedFlag:
      return value.is_boolean() ? put_number(value.get<bool>() ? 1 : 0, field, record)
                                : store_number(value, field, record, place);
    default:
      return store_number(value, field, record, place);
  }
}

// ----------------------------------------------------------------------------------------- keys

// What a key tells of its field. Where there are several of a field, the last of these goes before the others.
enum class Part { kWord, kValue, kNone, kHex };

struct Meant {
  Part part;
  const Field *field;
};

using Keys = std::map<std::string, Meant, std::less<>>;

// The keys of the objects that describe such a record.
const Keys &keys_of(std::span<const Field> fields) {
  static std::map<const Field *, Keys> known;
  Keys &keys = known[fields.data()];
  if (!keys.empty()) return keys;
  for (const Field &field : fields) {
    const std::string key = key_of(field);
    keys[key] = {Part::kValue, &field};
    keys[key + std::string(kWordSuffix)] = {Part::kWord, &field};
    keys[key + std::string(kNoneSuffix)] = {Part::kNone, &field};
    keys[key + std::string(kHexSuffix)] = {Part::kHex, &field};
  }
  return keys;
}

struct Member {
  Part part;
  const Json *value;
  std::string place;
};

// What is to be stored of each field. A member that is none of a field has a misspelt key.
std::map<const Field *, Member> members_of(const Json &object, std::span<const Field> fields,
                                           const std::string &place) {
  const Keys &keys = keys_of(fields);
  std::map<const Field *, Member> members;
  for (const auto &[key, value] : as_object(object, place).items()) {
    const auto meant = keys.find(key);
    if (meant == keys.end()) refuse(member_of(place, key), "is not a field of this object");
    const auto &[part, field] = meant->second;
    const auto member = members.find(field);
    if (member == members.end() || member->second.part < part)
      members.insert_or_assign(field, Member{part, &value, member_of(place, key)});
  }
  return members;
}

void store_member(const Member &member, const Field &field, std::span<uint8_t> record) {
  const auto &[part, value, place] = member;
  switch (part) {
    case Part::kWord:
      return;  // says no more than the value does
    case Part::kValue:
      return store_value(*value, field, record, place);
    case Part::kNone:
      if (!is_numeric(field)) refuse(place, "belongs to a field that is no number");
      return store_value(*value, field, record, place);
    case Part::kHex:
      return store_bytes(*value, record.subspan(field.offset, field.width), place);
  }
}

void store_fields(const Json &object, std::span<const Field> fields, std::span<uint8_t> record,
                  const std::string &place) {
  for (const auto &[field, member] : members_of(object, fields, place)) store_member(member, *field, record);
}

// The flag that decides which other fields there are stands at the same place in both tables.
void store_flag(const Json &object, const Kind &kind, std::span<uint8_t> record, const std::string &place) {
  Json flag_alone = Json::object();
  const std::string key = key_of(kind.variant->flag);
  for (const std::string &name : {key, key + std::string(kNoneSuffix), key + std::string(kHexSuffix)})
    if (as_object(object, place).contains(name)) flag_alone[name] = object[name];
  store_fields(flag_alone, kind.fields, record, place);
}

}  // namespace

void store_number(const Json &value, const Field &field, std::span<uint8_t> record, const std::string &place) {
  const auto bits = static_cast<unsigned>(8 * field.width);
  const bool is_signed = field.type == FieldType::kSigned;
  const uint64_t largest = ~uint64_t{0} >> (64 - bits + is_signed);
  const int64_t smallest = is_signed ? -static_cast<int64_t>(largest) - 1 : 0;
  const bool may_be_prefixed = field.meaning.base != Base::kDecimal;
  const Json number = may_be_prefixed ? without_prefix(value, place) : value;
  put_number(as_number(number, smallest, largest, place), field, record);
}

void store_device(const Json &object, const Kind &kind, std::span<uint8_t> record, const std::string &place) {
  if (kind.variant) store_flag(object, kind, record, place);
  store_fields(object, fields_of(kind, record), record, place);
}

}  // namespace mcstore
