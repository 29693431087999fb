#include <gmock/gmock.h>

#include "raid/controllers/controller_test.h"
#include "raid/listed_kind.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

const std::string kNull = "\\(nil\\)";
const std::string kBlock = "0x[0-9a-f]+";

std::string missing(const std::string &cur, const std::string &cached) {
  return "<get_store_ctrls: 955> \\[get_store_ctrls\\]cur_ctlr_list= " + cur + ", cached_ctlr_list= " + cached + "\n";
}

TEST_P(NullList, IsLoggedAsAnUnreadFile) {
  store({0});
  lose();

  full();

  EXPECT_THAT(system_log(), ElementsAre(read_error("No such file or directory")));  // the product file's
}

TEST_P(NullList, IsTracedWithBothPointers) {
  files.write_text("/etc/product", "tarnika");
  store({0});
  trace_at(3);
  lose();

  full();

  EXPECT_THAT(trace(), MatchesRegex(GetParam() == kCur ? missing(kNull, kBlock) : missing(kBlock, kNull)));
}

TEST_P(NullList, CountsForNothingInTheSizes) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose();
  full();

  const Reply reply = full({.size = controller_room(4)});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
}

class NullLists : public ListTest {
 protected:
  void expect_the_next_delta_to_find_what_is_gone() {
    store(devices_below(3), 3000);
    EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(3), numbered(2).stored()));
  }
};

// The exchange made it the cached list, of a capacity that seems to be enough.
TEST_F(NullLists, ANullCurListIsTheNextCallsCachedList) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose(kCur, kNullAndNoError);
  full();
  trace_at(3);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
  EXPECT_THAT(trace(), MatchesRegex(missing(kBlock, kNull)));

  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));
  expect_the_next_delta_to_find_what_is_gone();
}

TEST_F(NullLists, ANullCachedListIsTheNextCallsCurListAndMadeAnew) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose(kCached, kNullAndNoError);
  full();

  EXPECT_EQ(full().bytes(), reply_of(devices_below(4)));
  expect_the_next_delta_to_find_what_is_gone();
}

TEST_F(NullLists, BothNullAreTracedSo) {
  files.write_text("/etc/product", "tarnika");
  store({0});
  trace_at(3);
  lose(kCur, kNullAndNoError);
  lose(kCached, kNullAndNoError);

  full();

  EXPECT_THAT(trace(), MatchesRegex(missing(kNull, kNull)));
  EXPECT_EQ(system_log().size(), 1u);
}

}  // namespace
}  // namespace tests
