#include <gmock/gmock.h>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::Values;

class GoneControllers : public ControllerTest {};

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

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) +
                               gone(numbered(0), Bytes().fill(700, 0x77).fill(kControllerSize - 700, 0xA5)));
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

}  // namespace
}  // namespace tests
