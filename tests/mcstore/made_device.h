// Devices for tests that need no store file: a record of zeros with a few fields set.
#pragma once

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "mcstore/inventory/inventory.h"
#include "mcstore/kinds/device.h"

namespace tests {

struct FieldValue {
  std::string_view field;
  std::variant<int64_t, std::string_view> value;
};

class MadeDevice {
 public:
  MadeDevice(std::string_view kind, const std::vector<FieldValue> &values);

  mcstore::Device device() const { return {kind_, 0, record_, record_}; }
  const std::vector<uint8_t> &record() const { return record_; }

 private:
  const mcstore::Kind &kind_;
  std::vector<uint8_t> record_;
};

// An inventory that is fine, of these devices of one kind.
mcstore::KindInventory made_inventory(std::string_view kind, const std::vector<std::vector<FieldValue>> &devices);

}  // namespace tests
