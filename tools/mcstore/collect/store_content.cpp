#include "mcstore/collect/store_content.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>

#include "mcstore/collect/flash_module.h"
#include "mcstore/json/json_input.h"
#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"
#include "records/kind_facts.h"

namespace mcstore {
namespace {

using mcserver::FieldType;

void store_number(const Json &value, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  const auto bits = static_cast<unsigned>(8 * field.width);
  const bool is_signed = field.type == FieldType::kSigned;
  const uint64_t largest = ~uint64_t{0} >> (64 - bits + is_signed);
  const int64_t smallest = is_signed ? -static_cast<int64_t>(largest) - 1 : 0;

  const uint64_t number = as_number(value, smallest, largest, place);
  for (size_t i = 0; i < field.width; ++i) bytes[i] = static_cast<uint8_t>(number >> (8 * i));
}

void store_flag(const Json &value, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  if (value.is_boolean())
    bytes[0] = value.get<bool>();
  else
    store_number(value, field, bytes, place);
}

void store_text(const Json &value, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  const std::string text = as_text(value, field.width - 1, place);  // with its terminator
  std::copy(text.begin(), text.end(), bytes.begin());
}

void store_bytes(const Json &value, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  const std::string digits = value.is_string() ? value.get<std::string>() : "not hexadecimal";
  if (digits.size() % 2 != 0 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
    refuse(place, "must be a string of pairs of hexadecimal digits");
  if (digits.size() / 2 > field.width)
    refuse(place, fmt::format("is {} bytes long: at most {} fit", digits.size() / 2, field.width));
  for (size_t i = 0; i < digits.size() / 2; ++i)
    std::from_chars(digits.data() + 2 * i, digits.data() + 2 * i + 2, bytes[i], 16);
}

void store_object(const Json &object, std::span<const Field> fields, std::span<uint8_t> record,
                  const std::string &place);

void store_entries(const Json &list, const Field &field, std::span<uint8_t> bytes, const std::string &place) {
  const size_t size = field.entries->size;
  if (!list.is_array()) refuse(place, "must be an array");
  if (list.size() > field.width / size)
    refuse(place, fmt::format("has {} entries: at most {} fit", list.size(), field.width / size));
  for (size_t i = 0; i < list.size(); ++i)
    store_object(list[i], field.entries->fields, bytes.subspan(i * size, size), fmt::format("{}[{}]", place, i));
}

void store_field(const Json &value, const Field &field, std::span<uint8_t> record, const std::string &place) {
  const std::span<uint8_t> bytes = record.subspan(field.offset, field.width);
  switch (field.type) {
    case FieldType::kText:
      return store_text(value, field, bytes, place);
    case FieldType::kBytes:
      return store_bytes(value, field, bytes, place);
    case FieldType::kFlag:
    case FieldType::kInvertedFlag:
      return store_flag(value, field, bytes, place);
    case FieldType::kEntries:
      return store_entries(value, field, bytes, place);
    default:
      return store_number(value, field, bytes, place);
  }
}

// ----------------------------------------------------------------------------------------- records and files

const Field &field_named(std::span<const Field> fields, const std::string &name, const std::string &place) {
  const auto field = std::find_if(fields.begin(), fields.end(), [&](const Field &one) { return one.name == name; });
  if (field == fields.end()) refuse(place, "is not a field of this object");
  return *field;
}

void store_object(const Json &object, std::span<const Field> fields, std::span<uint8_t> record,
                  const std::string &place) {
  for (const auto &[key, value] : as_object(object, place).items()) {
    const std::string key_place = fmt::format("{}.{}", place, key);
    store_field(value, field_named(fields, key, key_place), record, key_place);
  }
}

void append_record(std::vector<uint8_t> &file, const Json &object, const Kind &kind, const std::string &place) {
  file.resize(file.size() + kind.record_size);
  const std::span<uint8_t> record = std::span(file).last(kind.record_size);
  // First the flag that decides which other fields there are.
  if (kind.variant && as_object(object, place).contains(kind.variant->flag.name))
    store_field(object[kind.variant->flag.name], kind.variant->flag, record,
                fmt::format("{}.{}", place, kind.variant->flag.name));
  store_object(object, fields_of(kind, record), record, place);
}

void append_records(std::vector<uint8_t> &file, const Json &list, const Kind &kind, const std::string &place) {
  if (!list.is_array()) refuse(place, "must be an array");
  for (size_t i = 0; i < list.size(); ++i) append_record(file, list[i], kind, fmt::format("{}[{}]", place, i));
}

StoreContent parse_store(const Kind &kind, const Json &object, const std::string &place) {
  StoreContent store{.lock_path = kind.lock_path,
                     .path = kind.store_path,
                     .bytes = std::vector<uint8_t>(total_width(kind.store_header))};
  for (const auto &[key, value] : as_object(object, place).items()) {
    const std::string key_place = fmt::format("{}.{}", place, key);
    if (key == "records")
      append_records(store.bytes, value, kind, key_place);
    else
      store_field(value, field_named(kind.store_header, key, key_place), store.bytes, key_place);
  }
  return store;
}

}  // namespace

std::vector<StoreContent> parse_inventory(const std::string &json_text) {
  const Json root = parse_json(json_text);
  std::vector<StoreContent> stores;
  for (const auto &[key, value] : as_object(root, "the inventory").items()) {
    if (key == kFlashModuleKey) {
      stores.push_back({.lock_path = mcserver::records::kRaidLockPath,
                        .path = kFlashModulePath,
                        .bytes = flash_module_image(value, key)});
      continue;
    }
    const auto kind =
        std::find_if(kinds().begin(), kinds().end(), [&, &name = key](const Kind &one) { return one.name == name; });
    if (kind == kinds().end()) refuse(key, "is not a kind of device");
    if (kind->store_path.empty()) refuse(key, "has no store file");
    stores.push_back(parse_store(*kind, value, key));
  }
  return stores;
}

}  // namespace mcstore
