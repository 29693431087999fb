#include "raid/summary_lists_tests.h"

#include "raid/controllers/controller_test.h"

namespace tests {

const ListedKind kListedKind = {
    .full = "mc_get_store_ctrls",
    .delta = "mc_delta_store_ctrls",
    .store = kControllerStore,
    .file_header = Bytes().u8(kReady),
    .stored = [](const Device &device) { return numbered(device.number, device.is_modified ? 2 : 1).stored(); },
    .reported = [](const Device &device) { return numbered(device.number, device.is_modified ? 2 : 1).reported(); },
    .reply_header = [](uint8_t count) { return controller_header(kReady, count); },
    .quiet_delta = controller_header(kReady, 0),
    .last_call = "fread",  // of the state
    .last_call_number = 1,
    .no_cur_list = "<get_store_ctrls: 917> [get_store_ctrls]cur_ctlr_list memory allocation failed\n",
    .no_cached_list = "<get_store_ctrls: 927> [get_store_ctrls]cached_ctlr_list memory allocation failed\n",
};

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(SummaryLists, AreSizedByTheFileAsAWhole) {
  files.write(kControllerStore, Bytes::repeated(kControllerSize - 1, 0));
  full();
  EXPECT_EQ(allocations(), 0);

  files.write(kControllerStore, Bytes::repeated(kControllerSize, 0));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_P(NoMemory, LeavesTheTimeMovedAndTheStateTaken) {
  files.write(kControllerStore, controller_file(kNotReady, {numbered(0)}));
  full();
  EXPECT_EQ(grow_in_vain().status, -35);
  EXPECT_EQ(system_log().size(), 1u);

  EXPECT_EQ(delta().length, 0u);

  store(devices_below(4), 3000);
  EXPECT_EQ(delta().status, 0);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(NoMemory, LetsTheNextFullCallRememberWhatIsGoneLater) {
  remember(devices_below(2));
  grow_in_vain();
  full();
  store(devices_below(3), 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(3), numbered(2).stored()));
}

TEST_P(NoMemory, LeavesTheCountInTheSizes) {
  remember(devices_below(2));
  grow_in_vain();
  store({0}, 3000);

  EXPECT_THAT(full({.size = controller_room(1 + 2) - 1, .growth = {Growth::kMove}}).requests,
              ElementsAre(controller_room(1)));
}

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryFor, TheCurListLeavesALongCachedListBehindAShortFile) {
  remember(devices_below(3));
  grow_in_vain(kCur, verdict());
  store({0}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 2) + gone(numbered(1), numbered(0).stored()) +
                                 gone(numbered(2), untouched_slot()));

  store(devices_below(3), 4000);
  EXPECT_EQ(delta().bytes(), reply_of({1, 2}));
}

TEST_P(NoMemoryFor, TheCurListLeavesNothingToCompareForAFileWithoutRecords) {
  remember(devices_below(2));
  grow_in_vain(kCur, verdict());
  store({}, 3000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 0));
  EXPECT_THAT(reply.requests, ElementsAre(19));  // and not again, for room that no gone one needs
}

TEST_P(NoMemoryFor, TheCachedListIsFollowedByOneThatKnowsWhatIsGone) {
  remember(devices_below(3));
  grow_in_vain(kCached, verdict());
  store({2, 0}, 3000);
  delta();
  store({2}, 4000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(0), numbered(2).stored()));
}

TEST_P(NoMemoryFor, TheCachedListIsDumpedAsZeros) {
  remember({5, 6});
  grow_in_vain(kCached, verdict());
  files.write_text("/var/mctool_ctlrdebug", "");
  store({7}, 3000);

  delta();

  EXPECT_EQ(files.read("/var/mctool_ctlrdebug.txt"),
            "\n cur_ctlr_list \n[7]  \n\n cached_ctlr_list \n[0]  [0]  \n\n After swap, cached_ctlr_list \n[7]  \n");
}

TEST_P(NoMemoryFor, TheCachedListIsNotDumpedForAFileWithoutRecords) {
  remember({5, 6});
  grow_in_vain(kCached, verdict());
  files.write_text("/var/mctool_ctlrdebug", "");
  store({}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
  EXPECT_FALSE(files.exists("/var/mctool_ctlrdebug.txt"));
}

TEST_P(NoMemoryFor, TheCachedListLeavesItsCountToThePlatform) {
  files.write_text("/etc/product", "kestrano");
  remember(devices_below(2));
  grow_in_vain(kCached, verdict());
  store({}, 3000);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
  EXPECT_EQ(full().bytes(), controller_header(kNotReady, 0));
}

}  // namespace
}  // namespace tests
