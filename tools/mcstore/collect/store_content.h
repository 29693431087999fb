// Turns the JSON description of an inventory into the store files that a collector would write.
//
//   {"controllers": {"subsystem_state": 2, "records": [{"index": 0, "controller": "SLOT-0", ...}, ...]}}
//
// The keys are the kinds' names, the header's fields and the records' fields; what is left out is zero. Beside the
// kinds there is "flash-module", for the product data that BBUs are completed with.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mcstore {

// Something in the description that cannot be stored; the message says where it stands.
class InventoryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct StoreContent {
  std::string_view lock_path;  // what is locked while the file is written
  std::string_view path;
  std::vector<uint8_t> bytes;
};

// Throws InventoryError.
std::vector<StoreContent> parse_inventory(const std::string &json_text);

}  // namespace mcstore
