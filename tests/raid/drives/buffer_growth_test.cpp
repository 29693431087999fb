#include <gmock/gmock.h>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The host is asked for the file, every announced drive once more, and a header.
class DriveReplyGrowth : public DriveTest {
 protected:
  DriveReplyGrowth() { store({numbered_drive(0)}); }

  static constexpr uint32_t kNeeded = (4 + 453) + 453 + 20;
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

class RefusedDriveReply : public DriveReplyGrowth, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedDriveReply, IsTooLarge) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam().first}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), drives_too_large("930", GetParam().second));
}

TEST_P(RefusedDriveReply, HasConsumedTheChangeAndMadeNoList) {
  full({.size = 100, .growth = {GetParam().first}});

  EXPECT_EQ(number_of_calls("calloc"), 0);
  store({numbered_drive(0), numbered_drive(1)}, 1000);
  EXPECT_EQ(delta().length, 0u);
}

INSTANTIATE_TEST_SUITE_P(, RefusedDriveReply,
                         testing::Values(Refusal(Growth::kRefuse, "100"), Refusal(Growth::kGrantLess, "929"),
                                         Refusal(Growth::kNull, "930")));

// ---------------------------------------------------------------------------------------- sums that do not fit 32 bits

class WrappedDriveReply : public DriveTest {};

TEST_F(WrappedDriveReply, IsFineWhereTheBufferIsLargeEnoughAnyway) {
  store(0xFFFFFFFF, {numbered_drive(0)});  // needs 477 - 453 = 24 bytes

  const Reply reply = full({.size = 473, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), drive_reply(0xFFFF, {numbered_drive(0)}));
}

TEST_F(WrappedDriveReply, EndsBeforeTheRecordThatDoesNotFit) {
  trace_at(3);
  store(0xFFFFFFFF, {numbered_drive(0), numbered_drive(1)});
  forget_calls();

  const Reply reply = full({.size = 925, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), drives_too_large("926", "925"));
  EXPECT_EQ(reply.buffer.slice(473, 452), Bytes::repeated(452, kUntouched));
}

TEST_F(WrappedDriveReply, EndsBeforeAPartialRecordThatDoesNotFit) {
  trace_at(3);
  files.write(kDriveStore, drive_file(0xFFFFFFFF, {numbered_drive(0)}) + numbered_drive(1).stored().slice(0, 30));

  EXPECT_EQ(full({.size = 502, .growth = {Growth::kRefuse}}).status, -13);
  EXPECT_EQ(trace(), drives_too_large("503", "502"));
  EXPECT_EQ(full({.size = 503, .growth = {Growth::kRefuse}}).status, 0);
}

TEST_F(WrappedDriveReply, ThatEndsEarlyLeavesTheListsAsTheyWere) {
  store({numbered_drive(0)});
  full();
  store(0xFFFFFFFF, {numbered_drive(1), numbered_drive(2)}, 2000);
  EXPECT_EQ(delta({.size = 600, .growth = {Growth::kRefuse}}).status, -13);
  store({numbered_drive(0)}, 3000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(WrappedDriveReply, HasRoomForItsHeader) {
  trace_at(3);
  store(0x036406C8, {});  // needs 24 - 24 bytes

  EXPECT_EQ(full({.size = 19, .growth = {Growth::kRefuse}}).status, -13);
  EXPECT_EQ(trace(), drives_too_large("20", "19"));
  EXPECT_EQ(full({.size = 20, .growth = {Growth::kRefuse}}).bytes(), drive_header(0x06C8, 0));
}

TEST_F(WrappedDriveReply, OfAFileThatDoesNotFitIsRefusedAtOnce) {
  trace_at(3);
  store(1, {});
  files.resize(kDriveStore, 0xFFFFFFFFu - 19);  // with the header, 2^32

  const Reply reply = full();

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), drives_too_large("453", "65536"));
}

TEST_F(WrappedDriveReply, OfAFileThatJustFitsIsAskedFor) {
  trace_at(3);
  store(0, {});
  files.resize(kDriveStore, 0xFFFFFFFFu - 20);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFFFFu));
  EXPECT_EQ(trace(), drives_too_large("-1", "65536"));
}

}  // namespace
}  // namespace tests
