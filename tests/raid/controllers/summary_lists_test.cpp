#include <gmock/gmock.h>

#include <cerrno>

#include "host/plugin_test.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Values;

constexpr host::Verdict kNullAndNoMemory = {.fails = true, .error = ENOMEM};
constexpr host::Verdict kABlockAndNoMemory = {.fails = false, .error = ENOMEM};
constexpr host::Verdict kNullAndNoError = {.fails = true, .error = 0};

const std::string kNoCurList = "<get_store_ctrls: 917> [get_store_ctrls]cur_ctlr_list memory allocation failed\n";
const std::string kNoCachedList = "<get_store_ctrls: 927> [get_store_ctrls]cached_ctlr_list memory allocation failed\n";

// The first list to be allocated is the cur list, the second one the cached list.
constexpr int kCur = 1;
constexpr int kCached = 2;

class SummaryLists : public ControllerTest {
 protected:
  // What a full call leaves: state 2, at 1000 seconds.
  void remember(const std::vector<Controller> &controllers) {
    store(kReady, controllers);
    ASSERT_EQ(full().status, 0);
    forget_calls();
  }

  // A delta call for more controllers than the lists have room for, while memory is short.
  Reply grow_in_vain(int list, host::Verdict verdict) {
    store(kReady, numbered_below(4), 2000);
    inject("realloc", list, verdict);
    return delta();
  }

  auto allocations() const { return number_of_calls("realloc"); }
};

// ------------------------------------------------------------------------------------------------------------ size

TEST_F(SummaryLists, AreMadeWithTheFirstRecord) {
  store(kReady, {});
  full();
  EXPECT_EQ(allocations(), 0);

  store(kReady, {numbered(0)});
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(SummaryLists, AreSizedByTheFileAsAWhole) {
  files.write(kControllerStore, Bytes::repeated(kControllerSize - 1, 0));
  full();
  EXPECT_EQ(allocations(), 0);

  files.write(kControllerStore, Bytes::repeated(kControllerSize, 0));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(SummaryLists, GrowOnlyWhenTheyMust) {
  remember(numbered_below(3));

  for (const size_t count : {3u, 1u, 0u, 2u, 3u}) {
    store(kReady, numbered_below(count));
    full();
  }
  EXPECT_EQ(allocations(), 0);

  store(kReady, numbered_below(4));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(SummaryLists, KeepWhatIsRememberedWhenTheyGrow) {
  remember(numbered_below(2));
  store(kReady, numbered_below(40), 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.length, controller_reply_size(38));
  EXPECT_EQ(slot(reply, 0), numbered(2).reported());
  EXPECT_EQ(slot(reply, 37), numbered(39).reported());
}

TEST_F(SummaryLists, ShrinkAndGrowWithTheFile) {
  remember(numbered_below(3));

  store(kReady, numbered_below(1), 2000);
  const Reply fewer = delta();
  store(kReady, numbered_below(3), 3000);
  const Reply more = delta();

  EXPECT_EQ(fewer.bytes(), controller_header(kReady, 2) + gone(numbered(1), numbered(0).stored()) +
                               gone(numbered(2), untouched_slot()));
  EXPECT_EQ(more.bytes(), controller_reply(kReady, {numbered(1), numbered(2)}));
}

TEST_F(SummaryLists, AreFreedWithThePlugInAndStartFromNothing) {
  remember(numbered_below(2));
  unload();
  load();

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, numbered_below(2)));
}

// ------------------------------------------------------------------------------------------------------- no memory

TEST_F(SummaryLists, AnEarlierErrnoIsNoAllocationFailure) {
  store(kReady, {numbered(0)});
  inject("fread", 1, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(SummaryLists, AnErrnoOtherThanNoMemoryIsNoAllocationFailure) {
  store(kReady, {numbered(0)});
  inject("realloc", kCur, {.fails = false, .error = EAGAIN});
  inject("realloc", kCached, {.fails = false, .error = EAGAIN});

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
}

struct Shortage {
  int list;
  host::Verdict verdict;
  const std::string &trace;
};
void PrintTo(const Shortage &shortage, std::ostream *out) {
  *out << (shortage.list == kCur ? "cur list, " : "cached list, ") << (shortage.verdict.fails ? "null" : "a block");
}

class NoMemory : public SummaryLists, public testing::WithParamInterface<Shortage> {};

TEST_P(NoMemory, AtTheFirstCallIsUnavailable) {
  store(kReady, {numbered(0)});
  trace_at(3);
  inject("realloc", GetParam().list, GetParam().verdict);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace);
  EXPECT_EQ(allocations(), GetParam().list);
}

TEST_P(NoMemory, AtALaterCallIsUnavailable) {
  remember(numbered_below(2));
  trace();
  trace_at(3);

  const Reply reply = grow_in_vain(GetParam().list, GetParam().verdict);

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), GetParam().trace);
}

TEST_P(NoMemory, LeavesTheTimeMovedAndTheStateTaken) {
  store(kNotReady, {numbered(0)});
  full();
  store(kReady, numbered_below(4), 2000);
  inject("realloc", GetParam().list, GetParam().verdict);
  EXPECT_EQ(delta().status, -35);
  EXPECT_EQ(system_log().size(), 1u);

  EXPECT_EQ(delta().length, 0u);

  store(kReady, numbered_below(4), 3000);
  EXPECT_EQ(delta().status, 0);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(NoMemory, IsOverWithTheNextFullCall) {
  remember(numbered_below(2));
  grow_in_vain(GetParam().list, GetParam().verdict);

  EXPECT_EQ(full().bytes(), controller_reply(kReady, numbered_below(4)));

  store(kReady, numbered_below(3), 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(3), numbered(2).stored()));
}

TEST_P(NoMemory, MakesTheListsAnewThoughTheyWouldBeLongEnough) {
  remember(numbered_below(2));
  grow_in_vain(GetParam().list, GetParam().verdict);
  store(kReady, numbered_below(1), 3000);
  forget_calls();

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_EQ(allocations(), 2);
}

TEST_P(NoMemory, LeavesTheCountInTheSizes) {
  remember(numbered_below(2));
  grow_in_vain(GetParam().list, GetParam().verdict);
  store(kReady, {numbered(0)}, 3000);

  EXPECT_THAT(full({.size = controller_room(1 + 2) - 1, .growth = {Growth::kMove}}).requests,
              ElementsAre(controller_room(1)));
}

INSTANTIATE_TEST_SUITE_P(, NoMemory,
                         Values(Shortage{kCur, kNullAndNoMemory, kNoCurList},
                                Shortage{kCur, kABlockAndNoMemory, kNoCurList},
                                Shortage{kCached, kNullAndNoMemory, kNoCachedList},
                                Shortage{kCached, kABlockAndNoMemory, kNoCachedList}));

class NoMemoryAt : public SummaryLists, public testing::WithParamInterface<bool> {
 protected:
  host::Verdict verdict() const { return GetParam() ? kABlockAndNoMemory : kNullAndNoMemory; }
};

TEST_P(NoMemoryAt, TheCurListLeavesTheCachedListToCompareWith) {
  remember(numbered_below(3));
  grow_in_vain(kCur, verdict());
  store(kReady, {numbered(0), numbered(1, 2), numbered(2), numbered(3)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1, 2), numbered(3)}));
}

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryAt, TheCurListLeavesALongCachedListBehindAShortFile) {
  remember(numbered_below(3));
  grow_in_vain(kCur, verdict());
  store(kReady, {numbered(0)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 2) + gone(numbered(1), numbered(0).stored()) +
                                 gone(numbered(2), untouched_slot()));

  store(kReady, numbered_below(3), 4000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1), numbered(2)}));
}

TEST_P(NoMemoryAt, TheCurListLeavesNothingToCompareForAFileWithoutRecords) {
  remember(numbered_below(2));
  grow_in_vain(kCur, verdict());
  store(kReady, {}, 3000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 0));
  EXPECT_THAT(reply.requests, testing::ElementsAre(19));  // and not again, for room that no gone one needs
}

TEST_P(NoMemoryAt, TheCachedListMakesEveryRecordNewAndNoneGone) {
  remember(numbered_below(3));
  grow_in_vain(kCached, verdict());
  store(kReady, {numbered(2), numbered(0)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(2), numbered(0)}));

  store(kReady, {numbered(2)}, 4000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(0), numbered(2).stored()));
}

// In place of the lost list there are zeros, which look like this record.
TEST_P(NoMemoryAt, TheCachedListMatchesNotEvenARecordOfZeros) {
  remember(numbered_below(2));
  grow_in_vain(kCached, verdict());
  files.write(kControllerStore, Bytes().u8(kReady).fill(kControllerSize, 0), 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1).fill(kControllerSize, 0));
}

TEST_P(NoMemoryAt, TheCachedListIsDumpedAsZeros) {
  remember({numbered(5), numbered(6)});
  grow_in_vain(kCached, verdict());
  files.write_text("/var/mctool_ctlrdebug", "");
  store(kReady, {numbered(7)}, 3000);

  delta();

  EXPECT_EQ(files.read("/var/mctool_ctlrdebug.txt"),
            "\n cur_ctlr_list \n[7]  \n\n cached_ctlr_list \n[0]  [0]  \n\n After swap, cached_ctlr_list \n[7]  \n");
}

TEST_P(NoMemoryAt, TheCachedListIsNotDumpedForAFileWithoutRecords) {
  remember({numbered(5), numbered(6)});
  grow_in_vain(kCached, verdict());
  files.write_text("/var/mctool_ctlrdebug", "");
  store(kReady, {}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
  EXPECT_FALSE(files.exists("/var/mctool_ctlrdebug.txt"));
}

TEST_P(NoMemoryAt, TheCachedListLeavesItsCountToThePlatform) {
  files.write_text("/etc/product", "kestrano");
  remember(numbered_below(2));
  grow_in_vain(kCached, verdict());
  store(kReady, {}, 3000);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
  EXPECT_EQ(full().bytes(), controller_header(kNotReady, 0));
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryAt, testing::Bool());

// --------------------------------------------------------------------------------------- null, and nothing the matter

class NullLists : public SummaryLists {
 protected:
  void lose(int list) { inject("realloc", list, kNullAndNoError); }

  void expect_the_next_delta_to_find_what_is_gone() {
    store(kReady, numbered_below(3), 3000);
    EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(3), numbered(2).stored()));
  }
};

class NullList : public NullLists, public testing::WithParamInterface<int> {};

TEST_P(NullList, EndsTheReplyAtTheFirstRecord) {
  store(kReady, numbered_below(2));
  lose(GetParam());

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 0));
  EXPECT_EQ(slot(reply, 0), numbered(0).stored());
  EXPECT_EQ(slot(reply, 1), untouched_slot());
  EXPECT_THAT(system_log(), ElementsAre(read_error("No such file or directory")));  // the product file's
}

TEST_P(NullList, IsTracedWithBothPointers) {
  files.write_text("/etc/product", "tarnika");
  store(kReady, {numbered(0)});
  trace_at(3);
  lose(GetParam());

  full();

  const std::string null = "\\(nil\\)";
  const std::string block = "0x[0-9a-f]+";
  EXPECT_THAT(trace(), MatchesRegex("<get_store_ctrls: 955> \\[get_store_ctrls\\]cur_ctlr_list= " +
                                    (GetParam() == kCur ? null : block) +
                                    ", cached_ctlr_list= " + (GetParam() == kCur ? block : null) + "\n"));
}

TEST_P(NullList, LeavesNothingRemembered) {
  remember(numbered_below(2));
  store(kReady, numbered_below(4), 2000);
  lose(GetParam());
  full();

  const Reply reply = full({.size = controller_room(4)});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
}

TEST_P(NullList, IsNoRecordForTheDump) {
  files.write_text("/var/mctool_stordebug", "");
  store(kReady, {numbered(0)});
  lose(GetParam());

  full();

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

TEST_P(NullList, ReportsNothingGone) {
  remember(numbered_below(2));
  store(kReady, numbered_below(4), 2000);
  lose(GetParam());

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

INSTANTIATE_TEST_SUITE_P(, NullList, Values(kCur, kCached));

// The exchange made it the cached list, of a capacity that seems to be enough.
TEST_F(NullLists, ANullCurListIsTheNextCallsCachedList) {
  remember(numbered_below(2));
  store(kReady, numbered_below(4), 2000);
  lose(kCur);
  full();
  trace_at(3);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
  EXPECT_THAT(trace(), MatchesRegex("<get_store_ctrls: 955> \\[get_store_ctrls\\]cur_ctlr_list= 0x[0-9a-f]+, "
                                    "cached_ctlr_list= \\(nil\\)\n"));

  EXPECT_EQ(full().bytes(), controller_reply(kReady, numbered_below(4)));
  expect_the_next_delta_to_find_what_is_gone();
}

TEST_F(NullLists, ANullCachedListIsTheNextCallsCurListAndMadeAnew) {
  remember(numbered_below(2));
  store(kReady, numbered_below(4), 2000);
  lose(kCached);
  full();

  EXPECT_EQ(full().bytes(), controller_reply(kReady, numbered_below(4)));
  expect_the_next_delta_to_find_what_is_gone();
}

TEST_F(NullLists, BothNullAreTracedSo) {
  files.write_text("/etc/product", "tarnika");
  store(kReady, {numbered(0)});
  trace_at(3);
  lose(kCur);
  lose(kCached);

  full();

  EXPECT_EQ(trace(), "<get_store_ctrls: 955> [get_store_ctrls]cur_ctlr_list= (nil), cached_ctlr_list= (nil)\n");
  EXPECT_EQ(system_log().size(), 1u);
}

// ------------------------------------------------------------------------------------------------------------ dumps

class SummaryListDumps : public SummaryLists {
 protected:
  SummaryListDumps() { files.write_text("/var/mctool_ctlrdebug", ""); }

  std::string dump() {
    std::string text = files.read("/var/mctool_ctlrdebug.txt");
    files.remove("/var/mctool_ctlrdebug.txt");
    return text;
  }
};

TEST_F(SummaryListDumps, ShowTheCurListThenTheCachedOneThenTheExchange) {
  remember({numbered(3), numbered(5)});
  EXPECT_EQ(dump(),
            "\n cur_ctlr_list \n[3]  [5]  \n\n cached_ctlr_list \n\n\n After swap, cached_ctlr_list \n[3]  [5]  \n");

  store(kReady, {numbered(5)}, 2000);
  delta();
  EXPECT_EQ(dump(),
            "\n cur_ctlr_list \n[5]  \n\n cached_ctlr_list \n[3]  [5]  \n\n After swap, cached_ctlr_list \n[5]  \n");
}

TEST_F(SummaryListDumps, ShowEveryRecordThatWasRead) {
  remember({numbered(0), numbered(1)});
  dump();
  store(kReady, {numbered(0), numbered(1, 2)}, 2000);

  delta();

  EXPECT_THAT(dump(), HasSubstr("\n cur_ctlr_list \n[0]  [1]  \n"));
}

TEST_F(SummaryListDumps, AreEmptyTitlesWhenNoneIsLeft) {
  remember({numbered(0)});
  dump();
  store(kReady, {}, 2000);

  full();

  EXPECT_EQ(dump(), "\n cur_ctlr_list \n\n\n cached_ctlr_list \n[0]  \n\n After swap, cached_ctlr_list \n\n");
}

TEST_F(SummaryListDumps, AreNotThereWhileThereAreNoLists) {
  store(kReady, {});

  full();

  EXPECT_FALSE(files.exists("/var/mctool_ctlrdebug.txt"));
}

TEST_F(SummaryListDumps, AreNotThereWhenNothingWasCompared) {
  remember({numbered(0)});
  dump();

  delta();

  EXPECT_FALSE(files.exists("/var/mctool_ctlrdebug.txt"));
}

}  // namespace
}  // namespace tests
