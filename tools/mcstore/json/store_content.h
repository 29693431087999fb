// Turns an inventory in JSON, as docs/json.md describes it, into the store files that a collector would write. What is
// left out is zero.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/json/inventory_error.h"

namespace mcstore {

struct StoreContent {
  std::string_view lock_path;  // what is locked while the file is written
  std::string_view path;
  std::vector<uint8_t> bytes;
};

// Throws InventoryError, whose message says where the text cannot be stored.
std::vector<StoreContent> parse_inventory(const std::string &json_text);

}  // namespace mcstore
