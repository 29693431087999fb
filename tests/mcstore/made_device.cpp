#include "mcstore/made_device.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace tests {
namespace {

void put(std::vector<uint8_t> &record, const mcserver::Field &field, const FieldValue &value) {
  if (const auto *text = std::get_if<std::string_view>(&value.value)) {
    std::copy(text->begin(), text->end(), record.begin() + static_cast<std::ptrdiff_t>(field.offset));
    return;
  }
  const auto number = static_cast<uint64_t>(std::get<int64_t>(value.value));
  for (size_t i = 0; i < field.width; ++i) record[field.offset + i] = static_cast<uint8_t>(number >> (8 * i));
}

}  // namespace

MadeDevice::MadeDevice(std::string_view kind, const std::vector<FieldValue> &values)
    : kind_(mcstore::kind_named(kind)), record_(kind_.record_size) {
  for (const FieldValue &value : values) {
    const mcserver::Field *field = device().find(value.field);
    if (!field) throw std::invalid_argument("no field " + std::string(value.field));
    put(record_, *field, value);
  }
}

mcstore::KindInventory made_inventory(std::string_view kind, const std::vector<std::vector<FieldValue>> &devices) {
  mcstore::KindInventory inventory(mcstore::kind_named(kind));
  for (const auto &values : devices) {
    const MadeDevice device(kind, values);
    inventory.records.insert(inventory.records.end(), device.record().begin(), device.record().end());
  }
  return inventory;
}

}  // namespace tests
