#include <gmock/gmock.h>

#include "raid/bbus/bbu_test.h"
#include "raid/listed_kind.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;

const std::string kNull = "\\(nil\\)";
const std::string kBlock = "0x[0-9a-f]+";

std::string missing(const std::string &cur, const std::string &cached) {
  return "<get_store_bbu: 2383> \\[get_store_bbu\\]cur_bbu_list= " + cur + ", cached_bbu_list= " + cached +
         "\n<get_store_bbu: 2431> \\[get_store_bbu\\]Error reading file /var/storBBU_info, Success\n";
}

TEST_P(NullList, IsTracedWithBothPointersAndAsAnUnreadFile) {
  store({0});
  trace_at(3);
  lose();

  full();

  EXPECT_THAT(trace(), MatchesRegex(GetParam() == kCur ? missing(kNull, kBlock) : missing(kBlock, kNull)));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(NullList, CountsForNothingInTheSizes) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose();
  delta();

  EXPECT_THAT(full({.size = bbu_reply_size(4)}).requests, IsEmpty());
}

class NullLists : public ListTest {
 protected:
  void expect_the_next_delta_to_be_right() {
    store({0, modified(1), 2}, 5000);
    EXPECT_EQ(delta().bytes(), reply_of({modified(1)}));
  }
};

// The exchange made it the cached list, of a capacity that seems to be enough.
TEST_F(NullLists, ANullCurListIsTheNextCallsCachedList) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose(kCur, kNullAndNoError);
  full();
  trace_at(3);

  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_THAT(trace(), MatchesRegex(missing(kBlock, kNull)));

  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));
  expect_the_next_delta_to_be_right();
}

TEST_F(NullLists, ANullCachedListIsTheNextCallsCurListAndMadeAnew) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose(kCached, kNullAndNoError);
  full();

  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));
  expect_the_next_delta_to_be_right();
}

TEST_F(NullLists, BothNullAreTracedSo) {
  store({0});
  trace_at(3);
  lose(kCur, kNullAndNoError);
  lose(kCached, kNullAndNoError);

  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_THAT(trace(), MatchesRegex(missing(kNull, kNull)));
}

// Nothing was read, so nothing is missing.
TEST_F(NullLists, AFileWithoutAWholeRecordNeedsNone) {
  for (const uint32_t size : {0u, 1u, kBbuSize - 1}) {
    files.write(kBbuStore, Bytes::repeated(size, 0x77));
    trace_at(9);

    EXPECT_EQ(full().bytes(), bbu_header(0));
    EXPECT_EQ(trace(), "");
  }
}

}  // namespace
}  // namespace tests
