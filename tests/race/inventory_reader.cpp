#include "race/inventory_reader.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>

namespace tests {

void InventoryReader::call(Mode mode) {
  const uint32_t earliest = collector_.finished();
  const Answer answer = caller_.call(entry_point(kind_, mode));
  const uint32_t latest = collector_.begun();

  calls_++;
  if (answer.status == -35) {
    EXPECT_EQ(answer.length, 0u);
    refused_++;
  } else {
    follower_.follow(mode, answer, earliest, latest);
  }
}

void InventoryReader::print_figures(const std::string &race) const {
  printf("%s, %s: %" PRIu64 " calls, %" PRIu64 " generations seen of %u, %" PRIu64 " refused\n", race.c_str(),
         kind_.name, calls_, follower_.generations_seen(), collector_.finished(), refused_);
}

}  // namespace tests
