// Room for gone controllers that the first request did not cover.

#include <gmock/gmock.h>

#include <cerrno>

#include "host/refusal.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RoomForGoneControllers : public ControllerTest {};

TEST_F(RoomForGoneControllers, ThatDoNotFitAreGivenExactlyTheRoomTheyNeed) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(2)));
  EXPECT_EQ(reply.length, controller_reply_size(2));
  const Bytes grown = Bytes::repeated(kControllerSize, kUntouchedAfterGrowth);
  EXPECT_EQ(reply.buffer, controller_header(kReady, 2) + gone(numbered(0), grown) + gone(numbered(1), grown));
}

// The buffer that was there first is gone when the plug-in writes again.
TEST_F(RoomForGoneControllers, ThatDoNotFitCostNothingOfTheReplySoFar) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(2), numbered(3, 0x01020304)}, 2000);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2), controller_reply_size(4)));
  EXPECT_EQ(reply.length, controller_reply_size(4));
  const Bytes grown = Bytes::repeated(kControllerSize, kUntouchedAfterGrowth);
  EXPECT_EQ(reply.buffer, controller_header(kReady, 4) + numbered(2).reported() + numbered(3, 0x01020304).reported() +
                              gone(numbered(0), grown) + gone(numbered(1), grown));
}

// The first request is for less than what was there, and this host takes it at its word.
TEST_F(RoomForGoneControllers, ThatDidFitAreAskedForWhenTheFirstRequestTookTheirRoom) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = controller_reply_size(2), .growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(2)));
  const Bytes grown = Bytes::repeated(kControllerSize, kUntouchedAfterGrowth);
  EXPECT_EQ(reply.bytes(),
            controller_header(kReady, 2, kUntouchedAfterGrowth) + gone(numbered(0), grown) + gone(numbered(1), grown));
}

TEST_F(RoomForGoneControllers, ThatStillFitAfterwardsAreNotAskedFor) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta({.size = controller_reply_size(3), .growth = {Growth::kMove}});

  EXPECT_THAT(reply.requests, ElementsAre(controller_room(1)));
  EXPECT_EQ(reply.bytes(),
            controller_header(kReady, 1, kUntouchedAfterGrowth) + gone(numbered(1), numbered(0).stored()));
}

TEST_F(RoomForGoneControllers, ThatFitAfterTheFirstRequestMakeNoSecondOne) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0), numbered(2)}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2)));
  EXPECT_EQ(reply.buffer.slice(0, controller_reply_size(2)),
            controller_header(kReady, 2) + numbered(2).reported() +
                gone(numbered(1), Bytes::repeated(kControllerSize, kUntouchedAfterGrowth)));
}

TEST_F(RoomForGoneControllers, ThatAreNotReportedNeedNoRoom) {
  remember({Controller{.serial = ""}, Controller{.vendor_id = 0}});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.length, 18u);
  EXPECT_THAT(reply.requests, ElementsAre(19));
}

TEST_F(RoomForGoneControllers, NeedRoomForNoMoreThanTheSlotsThereAre) {
  remember(numbered_below(300));
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(256)));
  EXPECT_EQ(reply.length, controller_reply_size(300 % 256));
  EXPECT_EQ(slot(reply, 0), gone(numbered(256), Bytes::repeated(kControllerSize, kUntouchedAfterGrowth)));
  EXPECT_EQ(slot(reply, 255), gone(numbered(255), Bytes::repeated(kControllerSize, kUntouchedAfterGrowth)));
}

TEST_F(RoomForGoneControllers, AndNewOnesTogetherNeedNoMoreRoomThanTheSlotsThereAre) {
  remember(numbered_below(200));
  std::vector<Controller> newer;
  for (size_t number = 200; number < 300; ++number) newer.push_back(numbered(number));
  store(kReady, newer, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_THAT(reply.requests, ElementsAre(controller_room(100), controller_reply_size(256)));
  EXPECT_EQ(reply.length, controller_reply_size(300 % 256));
  EXPECT_EQ(slot(reply, 43), gone(numbered(199), numbered(243).reported()));
  EXPECT_EQ(slot(reply, 44), numbered(244).reported());
}

TEST_F(RoomForGoneControllers, AHostThatSaysNothingHasGrantedTheRoom) {
  remember({numbered(0)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, Growth::kSayNothing}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(),
            controller_header(kReady, 1) + gone(numbered(0), Bytes::repeated(kControllerSize, kUntouchedAfterGrowth)));
}

class NoRoom : public RoomForGoneControllers {
 protected:
  void expect_refusal(const Reply &reply) {
    EXPECT_EQ(reply.status, -13);
    EXPECT_EQ(reply.length, 0u);
    EXPECT_EQ(trace(), too_large(controller_reply_size(2)));
  }
};

class RefusedRoom : public NoRoom, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedRoom, IsReplyTooLarge) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);
  trace_at(3);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, GetParam()}});

  expect_refusal(reply);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(2)));
}

TEST_P(RefusedRoom, LeavesTheTimeMovedTheStateTakenAndTheListAsItWas) {
  remember({numbered(0), numbered(1)});
  store(kNotReady, {}, 2000);
  EXPECT_EQ(delta({.size = 18, .growth = {Growth::kInPlace, GetParam()}}).status, -13);
  EXPECT_EQ(system_log().size(), 1u);

  EXPECT_EQ(delta().length, 0u);

  store(kReady, {numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(0), numbered(1).stored()));
  const auto lines = system_log();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_THAT(lines[0], HasSubstr("prevState(1), newState(2), prevModTime(2000, "));
}

INSTANTIATE_TEST_SUITE_P(, RefusedRoom, every_refusal());

TEST_F(NoRoom, IsWhatNoMemoryForKeepingTheReplyComesTo) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);
  trace_at(3);
  fail("malloc", 2, ENOMEM);  // the first is for looking devices up, where it is no failure

  expect_refusal(delta({.size = 18}));

  store(kReady, {numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(0), numbered(1).stored()));
}

TEST_F(NoRoom, IsRefusedAfterTheListsWereDumpedAndBeforeTheyAreExchanged) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);
  files.write_text("/var/mctool_ctlrdebug", "");

  delta({.size = 18, .growth = {Growth::kInPlace, Growth::kRefuse}});

  EXPECT_EQ(files.read("/var/mctool_ctlrdebug.txt"), "\n cur_ctlr_list \n\n\n cached_ctlr_list \n[0]  [1]  \n");
}

}  // namespace
}  // namespace tests
