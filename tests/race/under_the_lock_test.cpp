// A collector that keeps to the lock tears its files as it likes: nobody sees it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

#include "race/collector.h"
#include "race/emulation.h"
#include "race/inventory_reader.h"

namespace tests {
namespace {

class UnderTheLock : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = no_threads(); !why.empty()) GTEST_SKIP() << why;
  }
};

TEST_F(UnderTheLock, EveryAnswerIsOfOneGenerationWholeAndEveryDeltaTheDifferenceOfTwo) {
  const StoreDirectory files;
  std::filesystem::create_directory(files.real("/var"));
  const host::Plugin plugin(PLUGIN_PATH);
  const auto descriptors = open_descriptors();
  const ChosenTime time(std::chrono::milliseconds(1500));
  Collector raid(files, raid_kinds(), 1);
  Collector nvme(files, nvme_kinds(), 2);
  std::vector<InventoryReader> readers;
  for (const Kind &kind : raid_kinds()) readers.emplace_back(kind, plugin, files, raid);
  for (const Kind &kind : nvme_kinds()) readers.emplace_back(kind, plugin, files, nvme);

  {
    std::vector<std::jthread> threads;
    for (InventoryReader &reader : readers)
      threads.emplace_back([&] {
        std::minstd_rand random(3);
        while (time.is_left() && !testing::Test::HasFailure()) {
          reader.call(random() % 3 == 0 ? Mode::kFull : Mode::kDelta);
          // flock is not fair: without a pause, readers would keep the collector waiting.
          std::this_thread::sleep_for(std::chrono::microseconds(random() % 400));
        }
      });
  }
  raid.stop();
  nvme.stop();

  for (const InventoryReader &reader : readers) {
    EXPECT_GT(reader.generations_seen(), 10u);
    reader.print_figures("under the lock");
  }
  for (const Kind &kind : kinds()) EXPECT_TRUE(files.is_unlocked(kind.lock));
  EXPECT_EQ(open_descriptors(), descriptors);
}

}  // namespace
}  // namespace tests
