// A collector that keeps to the lock tears its files as it likes: nobody sees it.

#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

#include "race/race.h"
#include "race/surroundings.h"

namespace tests {
namespace {

TEST(UnderTheLock, EveryAnswerIsOfOneGenerationAndEveryDeltaTheDifferenceOfTwo) {
  if (!no_threads().empty()) GTEST_SKIP() << no_threads();
  Race race;

  {
    const ChosenTime time(std::chrono::milliseconds(1000));
    std::vector<std::jthread> threads;
    for (InventoryReader &reader : race.readers())
      threads.emplace_back([&] {
        std::minstd_rand random(3);
        while ((time.is_left() || !reader.has_seen_enough()) && !testing::Test::HasFailure()) {
          reader.call(random() % 3 == 0 ? Mode::kFull : Mode::kDelta);
          // flock is not fair: without a pause, readers would keep the collector waiting.
          std::this_thread::sleep_for(std::chrono::microseconds(random() % 400));
        }
      });
  }

  race.finish("under the lock");
  EXPECT_EQ(race.refused(), 0u);
}

}  // namespace
}  // namespace tests
