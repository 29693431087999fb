#include "raid/summary_lists_tests.h"

#include "raid/bbus/bbu_test.h"

namespace tests {

const ListedKind kListedKind = {
    .full = "mc_get_store_bbu",
    .delta = "mc_delta_store_bbu",
    .store = kBbuStore,
    .file_header = Bytes(),
    .stored = [](const Device &device) { return bbu_of(device.number, device.is_modified ? 2 : 1).stored(); },
    .reported = [](const Device &device) { return bbu_of(device.number, device.is_modified ? 2 : 1).reported(); },
    .reply_header = [](uint8_t count) { return bbu_header(count); },
    .quiet_delta = bbu_header(0),
    .last_call = "fopen",  // of the store file
    .last_call_number = 2,
    .no_cur_list =
        "<get_store_bbu: 2345> [get_store_bbu]cur_bbu_list memory allocation failed, Cannot allocate memory\n",
    .no_cached_list =
        "<get_store_bbu: 2356> [get_store_bbu]cached_bbu_list memory allocation failed, Cannot allocate memory\n",
};

namespace {

using testing::ElementsAre;

TEST_F(SummaryLists, AreSizedByTheNumberOfWholeRecords) {
  files.write(kBbuStore, Bytes::repeated(kBbuSize - 1, 0));
  full();
  EXPECT_EQ(allocations(), 0);

  files.write(kBbuStore, Bytes::repeated(kBbuSize, 0));
  full();
  EXPECT_EQ(allocations(), 2);

  files.write(kBbuStore, Bytes::repeated(2 * kBbuSize - 1, 0));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_P(NoMemory, IsFoundBeforeAnythingIsRead) {
  store({0});
  lose(GetParam().list, GetParam().verdict);

  full();

  EXPECT_EQ(number_of_calls("fread"), 0);
}

TEST_P(NoMemory, LeavesTheCountInTheSizes) {
  remember(devices_below(2));
  grow_in_vain();
  store({0}, 3000);

  EXPECT_THAT(full({.size = bbu_reply_size(1 + 2) - 1}).requests, ElementsAre(bbu_reply_size(1 + 2)));
}

TEST_P(NoMemory, LeavesNothingToTraceForAnEmptyFile) {
  remember(devices_below(2));
  grow_in_vain();
  store({}, 3000);
  trace_at(9);

  EXPECT_EQ(delta().bytes(), bbu_header(0));
  EXPECT_EQ(trace(), "");

  store({0}, 4000);
  EXPECT_EQ(delta().bytes(), reply_of({0}));
}

TEST_P(NoMemory, LeavesNoCurListToDump) {
  remember(devices_below(2));
  grow_in_vain();
  files.write_text("/var/mctool_bbudebug", "");
  store({}, 3000);

  full();

  EXPECT_FALSE(files.exists("/var/mctool_bbudebug.txt"));
}

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryFor, TheCurListLeavesALongCachedListBehindAShortFile) {
  remember(devices_below(3));
  grow_in_vain(kCur, verdict());
  store({2}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_header(0));

  store(devices_below(3), 4000);
  EXPECT_EQ(delta().bytes(), reply_of({0, 1}));
}

}  // namespace
}  // namespace tests
