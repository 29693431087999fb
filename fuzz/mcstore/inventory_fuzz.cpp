// Fuzzes inventories in JSON: whatever the text is, it becomes store files or is refused with a message.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "mcstore/json/store_content.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  try {
    mcstore::parse_inventory({data, data + size});
  } catch (const mcstore::InventoryError &error) {
    if (std::string(error.what()).empty()) abort();
  }
  return 0;
}
