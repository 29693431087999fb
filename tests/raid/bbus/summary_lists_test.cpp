#include <gmock/gmock.h>

#include <cerrno>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::Values;

constexpr host::Verdict kNullAndNoMemory = {.fails = true, .error = ENOMEM};
constexpr host::Verdict kABlockAndNoMemory = {.fails = false, .error = ENOMEM};

const std::string kNoCurList =
    "<get_store_bbu: 2345> [get_store_bbu]cur_bbu_list memory allocation failed, Cannot allocate memory\n";
const std::string kNoCachedList =
    "<get_store_bbu: 2356> [get_store_bbu]cached_bbu_list memory allocation failed, Cannot allocate memory\n";

// The first list to be allocated is the cur list, the second one the cached list.
constexpr int kCur = 1;
constexpr int kCached = 2;

class BbuLists : public BbuTest {
 protected:
  // A delta call for more BBUs than the lists have room for, while memory is short.
  Reply grow_in_vain(int list, host::Verdict verdict) {
    store(bbus_below(4), 2000);
    inject("realloc", list, verdict);
    return delta();
  }

  auto allocations() const { return number_of_calls("realloc"); }
};

// ------------------------------------------------------------------------------------------------------------ size

TEST_F(BbuLists, AreMadeWithTheFirstRecord) {
  store({});
  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_EQ(allocations(), 0);

  store(bbus_below(2));
  EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(2)));
  EXPECT_EQ(allocations(), 2);
}

TEST_F(BbuLists, AreSizedByTheNumberOfWholeRecords) {
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

TEST_F(BbuLists, GrowOnlyWhenTheyMust) {
  remember(bbus_below(3));

  for (const size_t count : {3u, 1u, 0u, 2u, 3u}) {
    store(bbus_below(count));
    full();
  }
  EXPECT_EQ(allocations(), 0);

  store(bbus_below(4));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(BbuLists, KeepWhatIsRememberedWhenTheyGrow) {
  remember(bbus_below(2));
  store(bbus_below(40), 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.length, bbu_reply_size(38));
  EXPECT_EQ(slot(reply, 0), bbu_of(2).reported());
  EXPECT_EQ(slot(reply, 37), bbu_of(39).reported());
}

TEST_F(BbuLists, ShrinkAndGrowWithTheFile) {
  remember(bbus_below(3));

  store(bbus_below(1), 2000);
  const Reply fewer = delta();
  store(bbus_below(3), 3000);
  const Reply more = delta();

  EXPECT_EQ(fewer.bytes(), bbu_header(0));
  EXPECT_EQ(more.bytes(), bbu_reply({bbu_of(1), bbu_of(2)}));
}

// ------------------------------------------------------------------------------------------------------- no memory

TEST_F(BbuLists, AnEarlierErrnoIsNoAllocationFailure) {
  store({bbu_of(0)});
  inject("fopen", 2, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(BbuLists, AnErrnoOtherThanNoMemoryIsNoAllocationFailure) {
  store({bbu_of(0)});
  inject("realloc", kCur, {.fails = false, .error = EAGAIN});
  inject("realloc", kCached, {.fails = false, .error = EAGAIN});

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
}

struct Shortage {
  int list;
  host::Verdict verdict;
  const std::string &trace;
};
void PrintTo(const Shortage &shortage, std::ostream *out) {
  *out << (shortage.list == kCur ? "cur list, " : "cached list, ") << (shortage.verdict.fails ? "null" : "a block");
}

class NoMemoryForBbus : public BbuLists, public testing::WithParamInterface<Shortage> {
 protected:
  Reply grow_in_vain() { return BbuLists::grow_in_vain(GetParam().list, GetParam().verdict); }
};

TEST_P(NoMemoryForBbus, AtTheFirstCallIsUnavailable) {
  store({bbu_of(0)});
  trace_at(3);
  inject("realloc", GetParam().list, GetParam().verdict);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace);
  EXPECT_EQ(allocations(), GetParam().list);
  EXPECT_EQ(number_of_calls("fread"), 0);
}

TEST_P(NoMemoryForBbus, AtALaterCallIsUnavailable) {
  remember(bbus_below(2));
  trace_at(3);

  const Reply reply = grow_in_vain();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace);
}

TEST_P(NoMemoryForBbus, LeavesTheTimeMoved) {
  remember({bbu_of(0)});
  grow_in_vain();

  EXPECT_EQ(delta().length, 0u);
}

TEST_P(NoMemoryForBbus, IsOverWithTheNextFullCall) {
  remember(bbus_below(2));
  grow_in_vain();

  EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(4)));

  store({bbu_of(0), bbu_of(1, 2), bbu_of(3)}, 3000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1, 2)}));
}

TEST_P(NoMemoryForBbus, MakesTheListsAnewThoughTheyWouldBeLongEnough) {
  remember(bbus_below(2));
  grow_in_vain();
  store({bbu_of(0)}, 3000);
  forget_calls();

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(allocations(), 2);
}

TEST_P(NoMemoryForBbus, LeavesTheCountInTheSizes) {
  remember(bbus_below(2));
  grow_in_vain();
  store({bbu_of(0)}, 3000);

  EXPECT_THAT(full({.size = bbu_reply_size(1 + 2) - 1}).requests, ElementsAre(bbu_reply_size(1 + 2)));
}

TEST_P(NoMemoryForBbus, LeavesNothingToTraceForAnEmptyFile) {
  remember(bbus_below(2));
  grow_in_vain();
  store({}, 3000);
  trace_at(9);

  EXPECT_EQ(delta().bytes(), bbu_header(0));
  EXPECT_EQ(trace(), "");

  store({bbu_of(0)}, 4000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0)}));
}

TEST_P(NoMemoryForBbus, LeavesNoCurListToDump) {
  remember(bbus_below(2));
  grow_in_vain();
  files.write_text("/var/mctool_bbudebug", "");
  store({}, 3000);

  full();

  EXPECT_FALSE(files.exists("/var/mctool_bbudebug.txt"));
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryForBbus,
                         Values(Shortage{kCur, kNullAndNoMemory, kNoCurList},
                                Shortage{kCur, kABlockAndNoMemory, kNoCurList},
                                Shortage{kCached, kNullAndNoMemory, kNoCachedList},
                                Shortage{kCached, kABlockAndNoMemory, kNoCachedList}));

class NoMemoryForBbusAt : public BbuLists, public testing::WithParamInterface<bool> {
 protected:
  host::Verdict verdict() const { return GetParam() ? kABlockAndNoMemory : kNullAndNoMemory; }
};

TEST_P(NoMemoryForBbusAt, TheCurListLeavesTheCachedListToCompareWith) {
  remember(bbus_below(3));
  grow_in_vain(kCur, verdict());
  store({bbu_of(0), bbu_of(1, 2), bbu_of(2), bbu_of(3)}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1, 2), bbu_of(3)}));
}

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryForBbusAt, TheCurListLeavesALongCachedListBehindAShortFile) {
  remember(bbus_below(3));
  grow_in_vain(kCur, verdict());
  store({bbu_of(2)}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_header(0));

  store(bbus_below(3), 4000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0), bbu_of(1)}));
}

TEST_P(NoMemoryForBbusAt, TheCachedListMakesEveryRecordNew) {
  remember(bbus_below(3));
  grow_in_vain(kCached, verdict());
  store({bbu_of(2), bbu_of(0)}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(2), bbu_of(0)}));

  store({bbu_of(0), bbu_of(2)}, 4000);
  EXPECT_EQ(delta().bytes(), bbu_header(0));
}

// In place of the lost list there are zeros, which look like this record.
TEST_P(NoMemoryForBbusAt, TheCachedListMatchesNotEvenARecordOfZeros) {
  remember(bbus_below(2));
  grow_in_vain(kCached, verdict());
  files.write(kBbuStore, Bytes::repeated(kBbuSize, 0), 3000);

  EXPECT_EQ(delta().bytes(), bbu_header(1).fill(kBbuSize, 0));
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryForBbusAt, testing::Bool());

}  // namespace
}  // namespace tests
