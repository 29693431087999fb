// What is wrong with an inventory in JSON.
#pragma once

#include <stdexcept>

namespace mcstore {

// The message says what, and where it stands.
class InventoryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace mcstore
