#include "race/race.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace tests {

Race::Race() {
  for (const Kind &kind : raid_kinds()) readers_.emplace_back(kind, plugin_, files_, raid_);
  for (const Kind &kind : nvme_kinds()) readers_.emplace_back(kind, plugin_, files_, nvme_);
}

bool Race::has_shown_enough() const { return std::ranges::all_of(readers_, &InventoryReader::has_seen_enough); }

void Race::finish(const std::string &name) {
  raid_.stop();
  nvme_.stop();
  for (const InventoryReader &reader : readers_) reader.print_figures(name);
  for (const Kind &kind : kinds()) EXPECT_TRUE(files_.is_unlocked(kind.lock)) << kind.lock;
  EXPECT_EQ(open_descriptors(), descriptors_);
}

uint64_t Race::refused() const {
  return std::accumulate(readers_.begin(), readers_.end(), uint64_t{0},
                         [](uint64_t sum, const InventoryReader &reader) { return sum + reader.refused(); });
}

}  // namespace tests
