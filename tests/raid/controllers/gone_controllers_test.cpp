#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "host/refusal.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Values;

// A byte that a moved buffer brought, and nobody wrote since.
constexpr uint8_t kMoved = 0x5A;

class GoneControllers : public ControllerTest {
 protected:
  // What a full call leaves: state 2, at 1000 seconds.
  void remember(const std::vector<Controller> &controllers) {
    store(kReady, controllers);
    ASSERT_EQ(full({.size = 1u << 20}).status, 0);
  }
};

TEST_F(GoneControllers, AreReportedWithStatusFour) {
  const Controller controller{.index = 3,
                              .name = "SLOT-9",
                              .serial = "SR1",
                              .vendor_id = 0x1234,
                              .device_id = 0x5678,
                              .subvendor_id = 0x9ABC,
                              .subdevice_id = 0xDEF0,
                              .type = 6};
  remember({controller});
  store(kReady, {}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, controller_reply_size(1));
  const Bytes slot = untouched_slot()
                         .put(0, Bytes::hex("03"))
                         .put(1, Bytes().text("SLOT-9", 16))
                         .put(104, Bytes::hex("01"))
                         .put(106, Bytes::hex("04"))
                         .put(107, Bytes().text("SR1", 31))
                         .put(255, Bytes::hex("1234 5678 9abc def0"))
                         .put(833, Bytes::hex("06"));
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + slot);
}

TEST_F(GoneControllers, FollowTheNewAndModifiedOnesInTheOrderOfTheList) {
  remember({numbered(0), numbered(1), numbered(2), numbered(3)});
  store(kReady, {numbered(4), numbered(2, 2)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 5) + numbered(4).reported() + numbered(2, 2).reported() +
                               gone(numbered(0), untouched_slot()) + gone(numbered(1), untouched_slot()) +
                               gone(numbered(3), untouched_slot()));
  EXPECT_THAT(reply.requests, IsEmpty());
}

TEST_F(GoneControllers, LieOverWhatAnUnreportedRecordLeftInTheSlot) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(1)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + gone(numbered(0), numbered(1).stored()));
}

TEST_F(GoneControllers, LieOverWhatAPartialRecordLeftInTheSlot) {
  remember({numbered(0)});
  files.write(kControllerStore, Bytes().u8(kReady).fill(700, 0x77), 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + gone(numbered(0), Bytes().fill(700, 0x77).fill(kControllerSize - 700, 0xA5)));
}

TEST_F(GoneControllers, AreReportedOnce) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(1)}, 2000);
  delta();
  store(kReady, {numbered(1)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_F(GoneControllers, AreNewWhenTheyComeBack) {
  remember({numbered(0)});
  store(kReady, {}, 2000);
  delta();
  store(kReady, {numbered(0)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(GoneControllers, AreNoPartOfAFullInventoryNorOfTheNextDelta) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(1)}, 2000);
  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(1)}));

  store(kReady, {numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_F(GoneControllers, AreReportedInAnyStateThatTheSubsystemChangedTo) {
  remember({numbered(0)});
  store(kNotReady, {}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kNotReady, 1) + gone(numbered(0), untouched_slot()));
}

TEST_F(GoneControllers, AMovedControllerIsNewAndGone) {
  Controller moved = numbered(0);
  moved.index = 9;
  remember({numbered(0)});
  store(kReady, {moved}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 2) + moved.reported() + gone(numbered(0), untouched_slot()));
}

TEST_F(GoneControllers, AReplacedControllerIsNewAndGone) {
  Controller replaced = numbered(0);
  replaced.serial = "OTHER";
  remember({numbered(0)});
  store(kReady, {replaced}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 2) + replaced.reported() + gone(numbered(0), untouched_slot()));
}

TEST_F(GoneControllers, TextsThatFillTheirFieldsAreReportedWhole) {
  Controller filled = numbered(0);
  filled.name = filling(16, 'N');
  filled.serial = filling(31, 'S');
  remember({filled});
  store(kReady, {}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(filled, untouched_slot()));
}

class UnknownController : public GoneControllers, public testing::WithParamInterface<Controller> {};

TEST_P(UnknownController, IsNeverReportedAsGone) {
  remember({GetParam(), numbered(1)});
  store(kReady, {}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(1), untouched_slot()));
}

INSTANTIATE_TEST_SUITE_P(, UnknownController,
                         Values(Controller{.serial = ""}, Controller{.vendor_id = 0}, Controller{.device_id = 0},
                                Controller{.subvendor_id = 0}, Controller{.subdevice_id = 0}));

TEST_F(GoneControllers, TheCountWrapsAndTheSlotsWithIt) {
  remember({numbered(300), numbered(301)});
  store(kReady, numbered_below(255), 2000);

  const Reply reply = delta({.size = 1u << 20});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, controller_reply_size(1));
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + gone(numbered(301), numbered(0).reported()));
  EXPECT_EQ(slot(reply, 254), numbered(254).reported());
  EXPECT_EQ(slot(reply, 255), gone(numbered(300), untouched_slot()));
}

// ------------------------------------------------------------------------ room that the first request did not cover

TEST_F(GoneControllers, ThatDoNotFitAreGivenExactlyTheRoomTheyNeed) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(2)));
  EXPECT_EQ(reply.length, controller_reply_size(2));
  const Bytes grown = Bytes::repeated(kControllerSize, kMoved);
  EXPECT_EQ(reply.buffer, controller_header(kReady, 2) + gone(numbered(0), grown) + gone(numbered(1), grown));
}

// The buffer that was there first is gone when the plug-in writes again.
TEST_F(GoneControllers, ThatDoNotFitCostNothingOfTheReplySoFar) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(2), numbered(3, 0x01020304)}, 2000);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2), controller_reply_size(4)));
  EXPECT_EQ(reply.length, controller_reply_size(4));
  const Bytes grown = Bytes::repeated(kControllerSize, kMoved);
  EXPECT_EQ(reply.buffer, controller_header(kReady, 4) + numbered(2).reported() + numbered(3, 0x01020304).reported() +
                              gone(numbered(0), grown) + gone(numbered(1), grown));
}

// The first request is for less than what was there, and this host takes it at its word.
TEST_F(GoneControllers, ThatDidFitAreAskedForWhenTheFirstRequestTookTheirRoom) {
  remember({numbered(0), numbered(1)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = controller_reply_size(2), .growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(2)));
  const Bytes grown = Bytes::repeated(kControllerSize, kMoved);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 2, kMoved) + gone(numbered(0), grown) + gone(numbered(1), grown));
}

TEST_F(GoneControllers, ThatStillFitAfterwardsAreNotAskedFor) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta({.size = controller_reply_size(3), .growth = {Growth::kMove}});

  EXPECT_THAT(reply.requests, ElementsAre(controller_room(1)));
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1, kMoved) + gone(numbered(1), numbered(0).stored()));
}

TEST_F(GoneControllers, ThatFitAfterTheFirstRequestMakeNoSecondOne) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0), numbered(2)}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2)));
  EXPECT_EQ(reply.buffer.slice(0, controller_reply_size(2)), controller_header(kReady, 2) + numbered(2).reported() +
                                             gone(numbered(1), Bytes::repeated(kControllerSize, kMoved)));
}

TEST_F(GoneControllers, ThatAreNotReportedNeedNoRoom) {
  remember({Controller{.serial = ""}, Controller{.vendor_id = 0}});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.length, 18u);
  EXPECT_THAT(reply.requests, ElementsAre(19));
}

TEST_F(GoneControllers, NeedRoomForNoMoreThanTheSlotsThereAre) {
  remember(numbered_below(300));
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(19, controller_reply_size(256)));
  EXPECT_EQ(reply.length, controller_reply_size(300 % 256));
  EXPECT_EQ(slot(reply, 0), gone(numbered(256), Bytes::repeated(kControllerSize, kMoved)));
  EXPECT_EQ(slot(reply, 255), gone(numbered(255), Bytes::repeated(kControllerSize, kMoved)));
}

TEST_F(GoneControllers, AndNewOnesTogetherNeedNoMoreRoomThanTheSlotsThereAre) {
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

TEST_F(GoneControllers, AHostThatSaysNothingHasGrantedTheRoom) {
  remember({numbered(0)});
  store(kReady, {}, 2000);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, Growth::kSayNothing}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + gone(numbered(0), Bytes::repeated(kControllerSize, kMoved)));
}

class NoRoom : public GoneControllers {
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

// ---------------------------------------------------------------------------------------------- add_deleted_ctlrs

CtlrSummary summary(const Controller &controller) {
  CtlrSummary summary = {};
  summary.index = controller.index;
  strncpy(summary.controller, controller.name.c_str(), sizeof summary.controller);
  strncpy(summary.serial_number, controller.serial.c_str(), sizeof summary.serial_number);
  summary.vendor_id = controller.vendor_id;
  summary.device_id = controller.device_id;
  summary.subvendor_id = controller.subvendor_id;
  summary.subdevice_id = controller.subdevice_id;
  summary.controller_type = controller.type;
  return summary;
}

class AddDeleted : public PluginTest {
 protected:
  using List = std::vector<CtlrSummary>;

  // The reply, with room for so many records, after the cached ones that are gone were appended.
  Bytes appended(uint8_t count, size_t room, const List &cur, const List &cached) {
    const Bytes before = reply_with(count, room);
    std::vector<uint8_t> reply(before.data(), before.data() + before.size());
    add(reply.data(), cur.size(), cur.data(), cached.size(), cached.data());
    return Bytes(reply);
  }
  void add(uint8_t *reply, size_t cur_count, const CtlrSummary *cur, size_t cached_count, const CtlrSummary *cached) {
    PLUGIN(add_deleted_ctlrs)
    (reply, static_cast<uint16_t>(cur_count), cur, static_cast<uint16_t>(cached_count), cached);
  }
  static Bytes reply_with(uint8_t count, size_t room) {
    return controller_header(kReady, count).fill(room * kControllerSize, 0xA5);
  }
};

TEST_F(AddDeleted, AppendsBehindTheRecordsThatAreCounted) {
  const Bytes reply = appended(2, 4, {summary(numbered(1))}, {summary(numbered(0)), summary(numbered(1))});

  EXPECT_EQ(reply, controller_header(kReady, 3) + untouched_slot() + untouched_slot() +
                       gone(numbered(0), untouched_slot()) + untouched_slot());
}

TEST_F(AddDeleted, WrapsTheCountAndTheSlot) {
  const Bytes reply = appended(255, 256, {summary(numbered(9))}, {summary(numbered(0)), summary(numbered(1))});

  EXPECT_EQ(reply[4], 1);
  EXPECT_EQ(reply.slice(controller_reply_size(255), kControllerSize), gone(numbered(0), untouched_slot()));
  EXPECT_EQ(reply.slice(kControllerHeaderSize, kControllerSize), gone(numbered(1), untouched_slot()));
}

TEST_F(AddDeleted, ReportsEveryOneOfTwoLikeEntries) {
  const Bytes reply = appended(0, 2, {summary(numbered(9))}, {summary(numbered(0)), summary(numbered(0))});

  EXPECT_EQ(reply,
            controller_header(kReady, 2) + gone(numbered(0), untouched_slot()) + gone(numbered(0), untouched_slot()));
}

TEST_F(AddDeleted, LooksNoFurtherThanTheCounts) {
  const CtlrSummary cached[] = {summary(numbered(0)), summary(numbered(1))};
  const CtlrSummary cur[] = {summary(numbered(9)), summary(numbered(0))};
  const Bytes before = reply_with(0, 2);
  std::vector<uint8_t> reply(before.data(), before.data() + before.size());

  add(reply.data(), 1, cur, 1, cached);

  EXPECT_EQ(Bytes(reply), controller_header(kReady, 1) + gone(numbered(0), untouched_slot()) + untouched_slot());
}

TEST_F(AddDeleted, IsPresentMeansTheSameIndexAndTheSameSerialNumber) {
  Controller moved = numbered(0);
  moved.index = 5;
  Controller replaced = numbered(0);
  replaced.serial = "SERIAL-01";

  const Bytes reply = appended(0, 1, {summary(moved), summary(replaced)}, {summary(numbered(0))});

  EXPECT_EQ(reply, controller_header(kReady, 1) + gone(numbered(0), untouched_slot()));
}

// Behind the serial number stand the ids, which may have changed since.
TEST_F(AddDeleted, ASerialNumberThatFillsItsFieldIsComparedWithinIt) {
  Controller cached = numbered(0);
  cached.serial = filling(31, 'S');
  Controller cur = cached;
  cur.vendor_id = 0x4242;

  EXPECT_EQ(appended(0, 1, {summary(cur)}, {summary(cached)}), reply_with(0, 1));
}

TEST_F(AddDeleted, WithoutAReplyOrAListDoesNothing) {
  const CtlrSummary entry = summary(numbered(0));
  const Bytes before = reply_with(0, 1);
  std::vector<uint8_t> reply(before.data(), before.data() + before.size());

  add(nullptr, 1, &entry, 1, &entry);
  add(reply.data(), 0, nullptr, 1, &entry);
  add(reply.data(), 1, &entry, 1, nullptr);

  EXPECT_EQ(Bytes(reply), before);
}

}  // namespace
}  // namespace tests
