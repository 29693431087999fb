// Looks at a kind, without a store file or a plug-in.
#pragma once

#include <string_view>
#include <vector>

#include "host/bytes.h"
#include "mcstore/inventory/inventory.h"

namespace tests {

inline mcstore::KindInventory look_at(std::string_view kind, const std::vector<Bytes> &records) {
  mcstore::KindInventory inventory(mcstore::kind_named(kind));
  for (const Bytes &record : records)
    inventory.records.insert(inventory.records.end(), record.data(), record.data() + record.size());
  return inventory;
}

inline mcstore::KindInventory look_in_vain(std::string_view kind, mcstore::KindStatus status, const char *error) {
  mcstore::KindInventory inventory(mcstore::kind_named(kind));
  inventory.status = status;
  inventory.error = error;
  return inventory;
}

// Where a record of that kind has the field.
inline size_t offset_of(std::string_view kind, std::string_view field) {
  const auto fields = mcstore::kind_named(kind).fields;
  return fields[mcserver::find_row(fields, field)].offset;
}

}  // namespace tests
