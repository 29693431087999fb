#include <gmock/gmock.h>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DriveReplyGrowth : public DriveTest {
 protected:
  DriveReplyGrowth() { store({numbered_drive(0)}); }

  static constexpr uint32_t kNeeded = drive_room(1, 1);
};

TEST_F(DriveReplyGrowth, IsNotAskedForWithRoomEnough) {
  const Reply reply = full({.size = kNeeded, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
}

TEST_F(DriveReplyGrowth, IsAskedForTheByteThatIsMissing) {
  const Reply reply = full({.size = kNeeded - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kNeeded));
  EXPECT_EQ(reply.bytes(), drive_reply(1, {numbered_drive(0)}));
}

class GrantedDriveReply : public DriveReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(GrantedDriveReply, IsWrittenToTheBufferThatTheHostReturned) {
  const Reply reply = full({.size = 0, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), drive_header(1, 1, kUntouchedAfterGrowth) + numbered_drive(0).reported());
}

INSTANTIATE_TEST_SUITE_P(, GrantedDriveReply, testing::Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

class RefusedDriveReply : public DriveReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedDriveReply, IsTooLarge) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), drives_too_large(kNeeded, size_after(GetParam(), 100, kNeeded)));
}

TEST_P(RefusedDriveReply, HasConsumedTheChangeAndMadeNoList) {
  full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(number_of_calls("calloc"), 0);
  store({numbered_drive(0), numbered_drive(1)}, 1000);
  EXPECT_EQ(delta().length, 0u);
}

INSTANTIATE_TEST_SUITE_P(, RefusedDriveReply, every_refusal());

// ---------------------------------------------------------------------------------------- sums that do not fit 32 bits

class WrappedDriveReply : public DriveTest {
 protected:
  // So many drives count as one less than none.
  static constexpr uint32_t kMinusOne = 0xFFFFFFFF;
};

TEST_F(WrappedDriveReply, IsFineWhereTheBufferIsLargeEnoughAnyway) {
  store(kMinusOne, {numbered_drive(0)});
  static_assert(drive_room(1, kMinusOne) == 24);  // two headers

  const Reply reply = full({.size = drive_reply_size(1), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), drive_reply(0xFFFF, {numbered_drive(0)}));
}

TEST_F(WrappedDriveReply, EndsBeforeTheRecordThatDoesNotFit) {
  trace_at(3);
  store(kMinusOne, {numbered_drive(0), numbered_drive(1)});
  forget_calls();

  const Reply reply = full({.size = drive_reply_size(2) - 1, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), drives_too_large(drive_reply_size(2), drive_reply_size(2) - 1));
  EXPECT_EQ(reply.buffer.slice(drive_reply_size(1), kDriveSize - 1), Bytes::repeated(kDriveSize - 1, kUntouched));
}

TEST_F(WrappedDriveReply, EndsBeforeAPartialRecordThatDoesNotFit) {
  trace_at(3);
  files.write(kDriveStore, drive_file(kMinusOne, {numbered_drive(0)}) + numbered_drive(1).stored().slice(0, 30));
  constexpr uint32_t kEnd = drive_reply_size(1) + 30;

  EXPECT_EQ(full({.size = kEnd - 1, .growth = {Growth::kRefuse}}).status, -13);
  EXPECT_EQ(trace(), drives_too_large(kEnd, kEnd - 1));
  EXPECT_EQ(full({.size = kEnd, .growth = {Growth::kRefuse}}).status, 0);
}

TEST_F(WrappedDriveReply, ThatEndsEarlyLeavesTheListsAsTheyWere) {
  store({numbered_drive(0)});
  full();
  store(kMinusOne, {numbered_drive(1), numbered_drive(2)}, 2000);
  EXPECT_EQ(delta({.size = drive_reply_size(1) + 127, .growth = {Growth::kRefuse}}).status, -13);
  store({numbered_drive(0)}, 3000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(WrappedDriveReply, HasRoomForItsHeader) {
  trace_at(3);
  // As many drives as 32 bits take beside the headers; the start of one makes up for the rest, so that nothing is
  // needed.
  constexpr uint64_t kAll = (uint64_t{1} << 32) - kDriveFileHeaderSize - kDriveHeaderSize;
  constexpr uint32_t kAnnounced = kAll / kDriveSize;
  constexpr uint32_t kRest = kAll % kDriveSize;
  static_assert(kRest + drive_room(0, kAnnounced) == 0);
  files.write(kDriveStore, drive_file(kAnnounced, {}).fill(kRest, 0));

  EXPECT_EQ(full({.size = 19, .growth = {Growth::kRefuse}}).status, -13);
  EXPECT_EQ(trace(), drives_too_large(20, 19));
  EXPECT_EQ(full({.size = 20 + kRest, .growth = {Growth::kRefuse}}).bytes(), drive_header(kAnnounced, 0));
}

TEST_F(WrappedDriveReply, OfAFileThatDoesNotFitIsRefusedAtOnce) {
  trace_at(3);
  store(1, {});
  files.resize(kDriveStore, 0xFFFFFFFFu - 19);  // with the header, 2^32

  const Reply reply = full();

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), drives_too_large(kDriveSize, 65536));
}

TEST_F(WrappedDriveReply, OfAFileThatJustFitsIsAskedFor) {
  trace_at(3);
  store(0, {});
  files.resize(kDriveStore, 0xFFFFFFFFu - 20);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFFFFu));
  EXPECT_EQ(trace(), drives_too_large(0xFFFFFFFF, 65536));
}

}  // namespace
}  // namespace tests
