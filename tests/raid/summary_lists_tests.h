// The tests of the lists that every kind has that is a ListedKind. A room includes them once.
#pragma once

#include <gmock/gmock.h>

#include "raid/listed_kind.h"

namespace tests {

// ------------------------------------------------------------------------------------------------------------ size

class SummaryLists : public ListTest {};

TEST_F(SummaryLists, AreMadeWithTheFirstRecord) {
  store({});
  EXPECT_EQ(full().bytes(), reply_of({}));
  EXPECT_EQ(allocations(), 0);

  store(devices_below(2));
  EXPECT_EQ(full().bytes(), reply_of(devices_below(2)));
  EXPECT_EQ(allocations(), 2);
}

TEST_F(SummaryLists, GrowOnlyWhenTheyMust) {
  remember(devices_below(3));

  for (const int count : {3, 1, 0, 2, 3}) {
    store(devices_below(count));
    full();
  }
  EXPECT_EQ(allocations(), 0);

  store(devices_below(4));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(SummaryLists, KeepWhatIsRememberedWhenTheyGrow) {
  remember(devices_below(2));
  store(devices_below(10), 2000);

  EXPECT_EQ(delta().bytes(), reply_of({2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(SummaryLists, ShrinkAndGrowWithTheFile) {
  remember(devices_below(3));

  store({0}, 2000);
  EXPECT_EQ(delta().status, 0);
  store(devices_below(3), 3000);
  EXPECT_EQ(delta().bytes(), reply_of({1, 2}));
}

TEST_F(SummaryLists, StartFromNothingWhenThePlugInIsLoadedAgain) {
  remember(devices_below(2));
  unload();
  load();

  EXPECT_EQ(delta().bytes(), reply_of(devices_below(2)));
}

// ------------------------------------------------------------------------------------------------------- no memory

TEST_F(SummaryLists, AnEarlierErrnoIsNoAllocationFailure) {
  store({0});
  inject(kListedKind.last_call, kListedKind.last_call_number, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().bytes(), reply_of({0}));
}

TEST_F(SummaryLists, AnErrnoOtherThanNoMemoryIsNoAllocationFailure) {
  store({0});
  lose(kCur, {.fails = false, .error = EAGAIN});
  lose(kCached, {.fails = false, .error = EAGAIN});

  EXPECT_EQ(full().bytes(), reply_of({0}));
}

TEST_P(NoMemory, AtTheFirstCallIsUnavailable) {
  store({0});
  trace_at(3);
  lose(GetParam().list, GetParam().verdict);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace());
  EXPECT_EQ(allocations(), GetParam().list);
}

TEST_P(NoMemory, AtALaterCallIsUnavailable) {
  remember(devices_below(2));
  trace_at(3);

  const Reply reply = grow_in_vain();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace());
}

TEST_P(NoMemory, LeavesTheTimeMoved) {
  remember({0});
  grow_in_vain();

  EXPECT_EQ(delta().length, 0u);
}

TEST_P(NoMemory, IsOverWithTheNextFullCall) {
  remember(devices_below(2));
  grow_in_vain();

  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));

  store({0, modified(1), 2, 3}, 3000);
  EXPECT_EQ(delta().bytes(), reply_of({modified(1)}));
}

TEST_P(NoMemory, MakesTheListsAnewThoughTheyWouldBeLongEnough) {
  remember(devices_below(2));
  grow_in_vain();
  store({0}, 3000);
  forget_calls();

  EXPECT_EQ(full().bytes(), reply_of({0}));
  EXPECT_EQ(allocations(), 2);
}

INSTANTIATE_TEST_SUITE_P(, NoMemory, every_shortage());

TEST_P(NoMemoryFor, TheCurListLeavesTheCachedListToCompareWith) {
  remember(devices_below(3));
  grow_in_vain(kCur, verdict());
  store({0, modified(1), 2, 3}, 3000);

  EXPECT_EQ(delta().bytes(), reply_of({modified(1), 3}));
}

TEST_P(NoMemoryFor, TheCachedListMakesEveryDeviceNewAndNoneGone) {
  remember(devices_below(3));
  grow_in_vain(kCached, verdict());
  store({2, 0}, 3000);

  EXPECT_EQ(delta().bytes(), reply_of({2, 0}));

  store({0, 2}, 4000);
  EXPECT_EQ(delta().bytes(), kListedKind.quiet_delta);
}

// In place of the lost list there are zeros, which look like this record.
TEST_P(NoMemoryFor, TheCachedListMatchesNotEvenARecordOfZeros) {
  const Bytes zeros = Bytes::repeated(kListedKind.stored(0).size(), 0);
  remember(devices_below(2));
  grow_in_vain(kCached, verdict());
  files.write(kListedKind.store, kListedKind.file_header + zeros, 3000);

  EXPECT_EQ(delta().bytes(), kListedKind.reply_header(1) + zeros);
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryFor, testing::Bool());

// ----------------------------------------------------------------------------------------- null, and nothing is wrong

TEST_P(NullList, EndsTheReplyAtTheFirstRecord) {
  const size_t size = kListedKind.stored(0).size();
  store(devices_below(2));
  lose();

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), reply_of({}));
  EXPECT_EQ(reply.buffer.slice(reply.length, size), kListedKind.stored(0));
  EXPECT_EQ(reply.buffer.slice(reply.length + size, size), Bytes::repeated(size, kUntouched));
}

TEST_P(NullList, LeavesNothingRememberedAndNothingGone) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose();
  EXPECT_EQ(delta().bytes(), kListedKind.quiet_delta);

  // Where the exchange made the lost one the cached list, it takes one more call.
  full();
  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));
  store({0, modified(1), 2, 3}, 3000);
  EXPECT_EQ(delta().bytes(), reply_of({modified(1)}));
}

TEST_P(NullList, IsNoRecordForTheDump) {
  files.write_text("/var/mctool_stordebug", "");
  store({0});
  lose();

  full();

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

INSTANTIATE_TEST_SUITE_P(, NullList, testing::Values(kCur, kCached));

}  // namespace tests
