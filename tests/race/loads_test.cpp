// A host may load and unload the plug-in as often as it likes.

#include <gtest/gtest.h>
#include <malloc.h>

#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <string>

#include "race/caller.h"
#include "race/chosen_time.h"
#include "race/kinds.h"

namespace tests {
namespace {

// What a process has taken of its system.
struct Belongings {
  long descriptors = open_descriptors();
  size_t allocated = mallinfo2().uordblks;
  long mappings = count_mappings();  // of files

  bool operator==(const Belongings &) const = default;

 private:
  static long count_mappings() {
    std::ifstream maps("/proc/self/maps");
    long count = 0;
    for (std::string line; std::getline(maps, line);) count += line.find('/') != line.npos ? 1 : 0;
    return count;
  }
};

void PrintTo(const Belongings &belongings, std::ostream *out) {
  *out << belongings.descriptors << " descriptors, " << belongings.allocated << " bytes, " << belongings.mappings
       << " mappings of files";
}

TEST(Loads, AndUnloadsLeaveNothing) {
  constexpr uint64_t kToWarmUp = 30;
  StoreDirectory files;
  for (const Kind &kind : kinds()) files.write(kind.store, store_file(kind, generation(7)));
  uint64_t loads = 0;
  const auto load_for_each_kind = [&] {
    for (const Kind &kind : kinds()) {
      const host::Plugin plugin(PLUGIN_PATH);
      EXPECT_EQ(Caller(plugin, files).call(kind.delta, 64).status, 0) << kind.name;
      loads++;
    }
  };
  while (loads < kToWarmUp) {
    load_for_each_kind();
    static_cast<void>(Belongings());  // looking needs some memory, too
  }
  const Belongings before;

  const ChosenTime time(std::chrono::milliseconds(1000));
  while ((time.is_left() || loads < 2 * kToWarmUp) && !HasFailure()) load_for_each_kind();

  EXPECT_EQ(Belongings(), before) << "after " << loads << " loads";
  printf("loads: %" PRIu64 " and as many unloads\n", loads);
}

}  // namespace
}  // namespace tests
