#include <gmock/gmock.h>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Values;

// A list that realloc did not give, though it saw no error: this is no failure, and what follows copes with it.
constexpr host::Verdict kNullAndNoError = {.fails = true, .error = 0};

// The first list to be allocated is the cur list, the second one the cached list.
constexpr int kCur = 1;
constexpr int kCached = 2;

class NullBbuLists : public BbuTest {
 protected:
  void lose(int list) { inject("realloc", list, kNullAndNoError); }

  void expect_the_next_delta_to_be_right() {
    store({bbu_of(0), bbu_of(1, 2), bbu_of(2)}, 5000);
    EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1, 2)}));
  }
};

std::string missing(const std::string &cur, const std::string &cached) {
  return "<get_store_bbu: 2383> \\[get_store_bbu\\]cur_bbu_list= " + cur + ", cached_bbu_list= " + cached +
         "\n<get_store_bbu: 2431> \\[get_store_bbu\\]Error reading file /var/storBBU_info, Success\n";
}
const std::string kNull = "\\(nil\\)";
const std::string kBlock = "0x[0-9a-f]+";

class NullBbuList : public NullBbuLists, public testing::WithParamInterface<int> {};

TEST_P(NullBbuList, EndsTheReplyAtTheFirstRecord) {
  store(bbus_below(2));
  lose(GetParam());

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(slot(reply, 0), bbu_of(0).stored());
  EXPECT_EQ(slot(reply, 1), untouched_bbu_slot());
}

TEST_P(NullBbuList, IsTracedWithBothPointersAndAsAnUnreadFile) {
  store({bbu_of(0)});
  trace_at(3);
  lose(GetParam());

  full();

  EXPECT_THAT(trace(), MatchesRegex(GetParam() == kCur ? missing(kNull, kBlock) : missing(kBlock, kNull)));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(NullBbuList, LeavesNothingRemembered) {
  remember(bbus_below(2));
  store(bbus_below(4), 2000);
  lose(GetParam());
  EXPECT_EQ(delta().bytes(), bbu_header(0));

  EXPECT_THAT(full({.size = bbu_reply_size(4)}).requests, IsEmpty());
}

TEST_P(NullBbuList, IsNoRecordForTheDumps) {
  files.write_text("/var/mctool_stordebug", "");
  store({bbu_of(0)});
  lose(GetParam());

  full();

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

INSTANTIATE_TEST_SUITE_P(, NullBbuList, Values(kCur, kCached));

// The exchange made it the cached list, of a capacity that seems to be enough.
TEST_F(NullBbuLists, ANullCurListIsTheNextCallsCachedList) {
  remember(bbus_below(2));
  store(bbus_below(4), 2000);
  lose(kCur);
  full();
  trace_at(3);

  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_THAT(trace(), MatchesRegex(missing(kBlock, kNull)));

  EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(4)));
  expect_the_next_delta_to_be_right();
}

TEST_F(NullBbuLists, ANullCachedListIsTheNextCallsCurListAndMadeAnew) {
  remember(bbus_below(2));
  store(bbus_below(4), 2000);
  lose(kCached);
  full();

  EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(4)));
  expect_the_next_delta_to_be_right();
}

TEST_F(NullBbuLists, BothNullAreTracedSo) {
  store({bbu_of(0)});
  trace_at(3);
  lose(kCur);
  lose(kCached);

  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_THAT(trace(), MatchesRegex(missing(kNull, kNull)));
}

// Nothing was read, so nothing is missing.
TEST_F(NullBbuLists, AFileWithoutAWholeRecordNeedsNone) {
  for (const uint32_t size : {0u, 1u, kBbuSize - 1}) {
    files.write(kBbuStore, Bytes::repeated(size, 0x77));
    trace_at(9);

    EXPECT_EQ(full().bytes(), bbu_header(0));
    EXPECT_EQ(trace(), "");
  }
}

}  // namespace
}  // namespace tests
