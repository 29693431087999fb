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
  bool only_if_missing = false;  // what is there already stays
};

struct StoredInventory {
  std::vector<StoreContent> stores;
  std::vector<std::string> omissions;  // a line for each kind whose devices are not those of a whole store file
};

// A file to lock is a store file as well: where no kind of the inventory writes it, one without devices comes before
// the others, for a place that has none. Throws InventoryError, whose message says where the text cannot be stored.
StoredInventory parse_inventory(const std::string &json_text);

}  // namespace mcstore
