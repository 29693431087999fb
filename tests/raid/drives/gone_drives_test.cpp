#include <gmock/gmock.h>

#include <cerrno>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GoneDrives : public DriveTest {
 protected:
  // What is known from now on.
  void remember(const std::vector<Drive> &drives) {
    store(drives);
    full({.growth = {Growth::kMove}});
  }
};

TEST_F(GoneDrives, AreReportedWithStatusFourteen) {
  remember({numbered_drive(0), numbered_drive(1)});
  store({numbered_drive(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.length, drive_reply_size(1));
  EXPECT_EQ(reply.bytes(), drive_header(1, 1) + gone_drive(numbered_drive(1), numbered_drive(0).stored()));
}

TEST_F(GoneDrives, KeepTheBytesThatTheBufferHeld) {
  remember({numbered_drive(0), numbered_drive(1)});
  store({}, 2000);

  EXPECT_EQ(delta().bytes(), drive_header(0, 2) + gone_drive(numbered_drive(0), untouched_drive_slot()) +
                                 gone_drive(numbered_drive(1), untouched_drive_slot()));
}

TEST_F(GoneDrives, StandBehindTheReportedOnesInTheListsOrder) {
  remember({numbered_drive(3), numbered_drive(1), numbered_drive(2)});
  store({numbered_drive(1, 2)}, 2000);

  EXPECT_EQ(delta().bytes(), drive_header(1, 3) + numbered_drive(1, 2).reported() +
                                 gone_drive(numbered_drive(3), untouched_drive_slot()) +
                                 gone_drive(numbered_drive(2), untouched_drive_slot()));
}

TEST_F(GoneDrives, AreForgotten) {
  remember({numbered_drive(0), numbered_drive(1)});
  store({numbered_drive(0)}, 2000);
  delta();
  store({numbered_drive(0)}, 3000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(GoneDrives, AreNotReportedByAFullCall) {
  remember({numbered_drive(0), numbered_drive(1)});
  store({numbered_drive(0)}, 2000);

  EXPECT_EQ(full().bytes(), drive_reply(1, {numbered_drive(0)}));
}

TEST_F(GoneDrives, AMovedDriveIsBothNewAndGone) {
  Drive drive = numbered_drive(0);
  remember({drive});
  drive.slot = 7;
  store({drive}, 2000);

  EXPECT_EQ(delta().bytes(),
            drive_header(1, 2) + drive.reported() + gone_drive(numbered_drive(0), untouched_drive_slot()));
}

TEST_F(GoneDrives, AreWrittenWithTheWholeSerialNumberField) {
  Drive drive = {.serial = std::string(21, 'S')};
  remember({drive});
  store({}, 2000);

  EXPECT_EQ(slot(delta(), 0), gone_drive(drive, untouched_drive_slot()));
}

TEST_F(GoneDrives, AreAllReportedWhenTheyAreEqual) {
  remember({numbered_drive(0), numbered_drive(0)});
  store({}, 2000);

  EXPECT_EQ(delta().length, drive_reply_size(2));
}

// ------------------------------------------------------------------------------------------- no room for them

class NoRoomForGoneDrives : public GoneDrives {
 protected:
  static constexpr uint32_t kNeeded = drive_reply_size(2);

  // The file is then a header, for whose reply 100 bytes are plenty.
  void lose_two() {
    remember({numbered_drive(0), numbered_drive(1)});
    store({}, 2000);
  }
};

TEST_F(NoRoomForGoneDrives, IsAskedForOnceMoreAndExactly) {
  lose_two();

  const Reply reply = delta({.size = 100});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kNeeded));
  EXPECT_EQ(reply.length, kNeeded);
}

TEST_F(NoRoomForGoneDrives, KeepsWhatTheReplyHeldWhereverItMoves) {
  remember({numbered_drive(0), numbered_drive(1), numbered_drive(2)});
  store({numbered_drive(2, 2)}, 2000);

  const Reply reply = delta({.size = drive_room(1, 1), .growth = {Growth::kMove}});

  EXPECT_THAT(reply.requests, ElementsAre(drive_reply_size(3)));
  EXPECT_EQ(reply.bytes().slice(0, drive_reply_size(1)), drive_header(1, 3) + numbered_drive(2, 2).reported());
  EXPECT_EQ(reply.length, drive_reply_size(3));
}

TEST_F(NoRoomForGoneDrives, IsNotAskedForWhereItIsNotNeeded) {
  remember({numbered_drive(0), numbered_drive(1)});
  store({numbered_drive(0), numbered_drive(1)}, 2000);

  const Reply reply = delta({.size = drive_room(2, 2)});

  EXPECT_THAT(reply.requests, IsEmpty());
}

class RefusedRoomForGoneDrives : public NoRoomForGoneDrives, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedRoomForGoneDrives, IsTooLargeAndLeavesTheListsAsTheyWere) {
  lose_two();
  trace_at(3);

  const Reply reply = delta({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), drives_too_large(kNeeded, size_after(GetParam(), 100, kNeeded)));
  store({}, 3000);
  EXPECT_EQ(delta().length, kNeeded);
}

INSTANTIATE_TEST_SUITE_P(, RefusedRoomForGoneDrives, every_refusal());

TEST_F(NoRoomForGoneDrives, IsRefusedWithoutMemoryToKeepTheReply) {
  lose_two();
  trace_at(3);
  fail("malloc", 2, ENOMEM);  // the first is for looking devices up, where it is no failure

  EXPECT_EQ(delta({.size = 100}).status, -13);
  EXPECT_EQ(trace(), drives_too_large(kNeeded, 100));
}

// ------------------------------------------------------------------------------------------- the exported function

class AddDeletedDrives : public DriveTest {
 protected:
  const std::vector<PhyDriveSummary> cached = {{1, 2, "S", 7}, {1, 3, "T", 8}};
  const std::vector<PhyDriveSummary> cur = {{1, 3, "T", 99}};
};

TEST_F(AddDeletedDrives, CountsInTheOrderOfTheMachine) {
  Bytes start = Bytes::repeated(drive_reply_size(2), kUntouched).put(5, little_endian().u16(1));
  std::vector<uint8_t> reply(start.data(), start.data() + start.size());

  PLUGIN(add_deleted_drives)(reply.data(), 1, cur.data(), 2, cached.data());

  EXPECT_EQ(Bytes(reply), start.put(5, little_endian().u16(2))
                              .put(drive_reply_size(1),
                                   gone_drive({.controller = 1, .slot = 2, .serial = "S"}, untouched_drive_slot())));
}

TEST_F(AddDeletedDrives, LooksAtNoMoreEntriesThanItIsTold) {
  std::vector<uint8_t> reply(drive_reply_size(1), uint8_t{0});

  PLUGIN(add_deleted_drives)(reply.data(), 0, cur.data(), 1, cached.data());
  EXPECT_EQ(reply[5], 1);
  PLUGIN(add_deleted_drives)(reply.data(), 0, cur.data(), 0, cached.data());
  EXPECT_EQ(reply[5], 1);
}

TEST_F(AddDeletedDrives, DoesNothingWithANullArgument) {
  std::vector<uint8_t> reply(drive_reply_size(1), kUntouched);

  PLUGIN(add_deleted_drives)(nullptr, 1, cur.data(), 2, cached.data());
  PLUGIN(add_deleted_drives)(reply.data(), 0, nullptr, 2, cached.data());
  PLUGIN(add_deleted_drives)(reply.data(), 1, cur.data(), 2, nullptr);

  EXPECT_EQ(Bytes(reply), Bytes::repeated(drive_reply_size(1), kUntouched));
}

}  // namespace
}  // namespace tests
