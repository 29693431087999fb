// Which devices of a kind are shown, and in which order.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"

namespace mcstore {

// "health=CRITICAL": the column of this name or heading shows that, or the field's number is that.
struct Filter {
  std::string column;
  std::string value;

  // Nothing if there is no "=" behind a name.
  static std::optional<Filter> parse(std::string_view text);
};

struct Selection {
  std::vector<std::string> devices = {};  // as Device::is_called() takes them; empty for all
  std::vector<Filter> filters = {};       // all of them must hold; never, of a kind that has no such column
  std::string sort = {};                  // a column; a kind that does not have it keeps its order
};

// The positions of the devices. Numbers are sorted as such, health from the worst on, and texts so that s2 comes before
// s10.
std::vector<size_t> select(const KindInventory &inventory, const Selection &selection, const Judge &judge);

}  // namespace mcstore
