#include "mcstore/json/inventory_format.h"

#include <algorithm>

namespace mcstore {

std::string key_of(std::string_view field_name) {
  std::string key(field_name);
  std::ranges::replace(key, '[', '_');
  std::erase(key, ']');
  return key;
}

uint64_t number_of_null(const mcserver::Field &field) {
  const auto &none = field.meaning.none;
  return none.begin() == none.end() ? 0 : static_cast<uint64_t>(*none.begin());
}

}  // namespace mcstore
