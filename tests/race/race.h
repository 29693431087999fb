// A host that reads every kind of device, while a collector for each family writes.
#pragma once

#include <deque>

#include "race/chosen_time.h"
#include "race/collector.h"
#include "race/inventory_reader.h"

namespace tests {

class Race {
 public:
  Race();

  std::deque<InventoryReader> &readers() { return readers_; }

  bool has_shown_enough() const;  // to every reader

  // Ends it, prints its figures, and expects that all is given back.
  void finish(const std::string &name);

  // How many calls did not succeed.
  uint64_t refused() const;

 private:
  StoreDirectory files_;
  host::Plugin plugin_{PLUGIN_PATH};
  long descriptors_ = open_descriptors();
  Collector raid_{files_, raid_kinds(), 1};
  Collector nvme_{files_, nvme_kinds(), 2};
  std::deque<InventoryReader> readers_ = {};
};

}  // namespace tests
