#include "mcstore/views/json_device.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/json/inventory_format.h"

namespace mcstore {
namespace {

using mcserver::FieldType;

bool is_zero(Record bytes) {
  return std::ranges::all_of(bytes, [](uint8_t byte) { return byte == 0; });
}

// A flag of another value than 0 and 1 stays a number, so that nothing of it is lost.
void write_number(JsonWriter &json, Record record, const Field &field) {
  const uint64_t number = raw_number(record, field);
  const bool is_flag = field.type == FieldType::kFlag || field.type == FieldType::kInvertedFlag;
  if (is_flag && number <= 1)
    json.boolean(number == 1);
  else if (field.meaning.base != mcserver::Base::kDecimal)
    json.text(fmt::format("{:#x}", number));
  else if (field.type == FieldType::kSigned)
    json.number(static_cast<int64_t>(number));
  else
    json.number(number);
}

// Each of these tells whether what it has written, read back, gives the same bytes again.

bool write_text(JsonWriter &json, Record bytes) {
  const auto end = std::ranges::find(bytes, uint8_t{0});
  const auto length = static_cast<size_t>(end - bytes.begin());
  const bool is_utf8 = json.text({reinterpret_cast<const char *>(bytes.data()), length});
  return is_utf8 && is_zero(bytes.subspan(length));
}

bool write_entries(JsonWriter &json, const Device &device, const Field &field) {
  const uint64_t count = raw_number(device.record(), *device.find(field.entries->count));
  const std::vector<Record> entries = entries_of(device.record(), field, count);
  json.begin_array();
  for (const Record entry : entries) {
    json.begin_object();
    for (const Field &part : field.entries->fields) {
      json.key(key_of(part));
      write_number(json, entry, part);
    }
    json.end_object();
  }
  json.end_array();
  return is_zero(bytes_of(device.record(), field).subspan(entries.size() * field.entries->size));
}

bool write_value(JsonWriter &json, const Device &device, const Field &field) {
  const Record bytes = bytes_of(device.record(), field);
  switch (field.type) {
    case FieldType::kText:
      return write_text(json, bytes);
    case FieldType::kBytes:
      return json.text(hex_digits(bytes));
    case FieldType::kEntries:
      return write_entries(json, device, field);
    default:
      write_number(json, device.record(), field);
      return true;
  }
}

bool write_null(JsonWriter &json, const Device &device, const Field &field, const std::string &key) {
  json.null();
  if (!is_numeric(field)) return is_zero(bytes_of(device.record(), field));
  if (raw_number(device.record(), field) != number_of_null(field)) {
    json.key(key + std::string(kNoneSuffix));
    write_number(json, device.record(), field);
  }
  return true;
}

void write_field(JsonWriter &json, const Device &device, const Field &field) {
  const std::string key = key_of(field);
  const bool is_known = device.is_known(field);
  json.key(key);
  const bool tells_all = is_known ? write_value(json, device, field) : write_null(json, device, field, key);
  if (const char *word = is_known ? word_of(device.record(), field) : nullptr)
    json.key(key + std::string(kWordSuffix)).text(word);
  const Record stored = bytes_of(device.stored(), field);
  if (!tells_all || !std::ranges::equal(stored, bytes_of(device.record(), field)))
    json.key(key + std::string(kHexSuffix)).text(hex_digits(stored));
}

}  // namespace

void write_fields(JsonWriter &json, const Device &device) {
  json.begin_object();
  for (const Field &field : device.fields()) write_field(json, device, field);
  json.end_object();
}

void write_device(JsonWriter &json, const Device &device, const Verdict &verdict) {
  json.key("device").text(device.name());
  json.key("health").text(word_for(verdict.health));
  write_texts(json.key("reasons"), verdict.reasons);
  write_texts(json.key("notes"), verdict.notes);
  write_fields(json.key("fields"), device);
}

void write_texts(JsonWriter &json, const std::vector<std::string> &texts) {
  json.begin_array();
  for (const std::string &text : texts) json.text(text);
  json.end_array();
}

}  // namespace mcstore
