#include <gmock/gmock.h>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

// What one record and the header need.
constexpr uint32_t kRoomForOne = length_of(1);

class VirtualDriveReplyGrowth : public VirtualDriveTest {};

// ------------------------------------------------------------------------------------------------------ when to ask

TEST_F(VirtualDriveReplyGrowth, IsNotAskedForWithRoomEnough) {
  store({volume(0)});

  const Reply reply = full({.size = kRoomForOne, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveReplyGrowth, IsAskedForTheByteThatIsMissing) {
  store({volume(0)});

  const Reply reply = full({.size = kRoomForOne - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveReplyGrowth, AnEmptyFileNeedsTheHeader) {
  store({});

  EXPECT_THAT(full({.size = 17}).requests, IsEmpty());
  EXPECT_THAT(full({.size = 16}).requests, ElementsAre(kVirtualDriveHeaderSize));
}

TEST_F(VirtualDriveReplyGrowth, CountsEveryByteOfTheFile) {
  files.write(kVirtualDriveStore, volume(0).stored().fill(kVirtualDriveSize - 1, 0));

  EXPECT_THAT(full({.size = length_of(2) - 1}).requests, IsEmpty());
  EXPECT_THAT(full({.size = length_of(2) - 2}).requests, ElementsAre(length_of(2) - 1));
}

TEST_F(VirtualDriveReplyGrowth, CountsGoneDrivesInADelta) {
  remember(volumes_below(3));

  store({volume(2)}, 2000);
  EXPECT_THAT(delta({.size = length_of(3)}).requests, IsEmpty());
  remember(volumes_below(3));
  store({volume(2)}, 3000);
  EXPECT_THAT(delta({.size = length_of(3) - 1}).requests, ElementsAre(length_of(3)));
}

TEST_F(VirtualDriveReplyGrowth, CountsGoneDrivesInAFullCallThatDoesNotReportThem) {
  remember(volumes_below(3));
  store({volume(2)}, 2000);

  const Reply reply = full({.size = length_of(3) - 1});

  EXPECT_THAT(reply.requests, ElementsAre(length_of(3)));
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(2)}));
}

TEST_F(VirtualDriveReplyGrowth, CountsGoneDrivesWithAnyOtherFlag) {
  remember(volumes_below(3));
  store({volume(2)}, 2000);

  EXPECT_THAT(retrieve(2, {.size = length_of(1)}).requests, ElementsAre(length_of(3)));
}

TEST_F(VirtualDriveReplyGrowth, DoesNotCountKnownDrivesThatAreStillThere) {
  remember(volumes_below(3));
  store(volumes_below(3), 2000);

  EXPECT_THAT(delta({.size = length_of(3)}).requests, IsEmpty());
}

TEST_F(VirtualDriveReplyGrowth, OfADeltaIsAskedForThoughNothingWillBeReported) {
  remember({volume(0)});
  store({volume(0)}, 2000);

  EXPECT_THAT(delta({.size = 17}).requests, ElementsAre(kRoomForOne));
}

TEST_F(VirtualDriveReplyGrowth, OfAnUnchangedFileIsNotAskedFor) {
  remember({volume(0)});

  EXPECT_THAT(delta({.size = 1}).requests, IsEmpty());
}

// ------------------------------------------------------------------------------------------- what the host answers

class GrantedVirtualDriveReply : public VirtualDriveReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(GrantedVirtualDriveReply, IsWrittenToTheBufferThatTheHostReturned) {
  store({volume(0)});

  const Reply reply = full({.size = 0, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(reply.buffer, virtual_drive_reply({volume(0)}, kUntouchedAfterGrowth));
}

TEST_P(GrantedVirtualDriveReply, HoldsGoneDrivesToo) {
  remember({volume(0), volume(1)});
  store({volume(0, kOrdinary)}, 2000);

  const Reply reply = delta({.size = 0, .growth = {GetParam()}});

  EXPECT_THAT(reply.requests, ElementsAre(length_of(2)));
  EXPECT_EQ(reply.buffer, virtual_drive_header(2, kUntouchedAfterGrowth) + volume(0, kOrdinary).reported() +
                              gone_virtual_drive(volume(1), untouched_virtual_drive_slot(kUntouchedAfterGrowth)));
}

INSTANTIATE_TEST_SUITE_P(, GrantedVirtualDriveReply, Values(Growth::kInPlace, Growth::kMove));

// A host that does not write the size has granted nothing here.
class RefusedVirtualDriveReply : public VirtualDriveReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedVirtualDriveReply, IsTooLarge) {
  store({volume(0)});
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(trace(), virtual_drives_too_large(size_after(GetParam(), 100, kRoomForOne), 100));
}

TEST_P(RefusedVirtualDriveReply, ADeltaIsTooLargeToo) {
  store({volume(0)});
  trace_at(3);

  const Reply reply = delta({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), virtual_drives_too_large(size_after(GetParam(), 100, kRoomForOne), 100));
}

TEST_P(RefusedVirtualDriveReply, IsNotWrittenAndNoSecondPassIsMade) {
  store({volume(0)});

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  if (GetParam() == Growth::kRefuse) {
    EXPECT_EQ(reply.buffer, Bytes::repeated(100, kUntouched));
  }
  EXPECT_EQ(number_of_calls("fread"), 2);
}

TEST_P(RefusedVirtualDriveReply, HasConsumedTheChange) {
  store({volume(0)});
  full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(delta().length, 0u);
}

TEST_P(RefusedVirtualDriveReply, LeavesWhatIsRemembered) {
  remember({volume(0), volume(1)});
  store({volume(2)}, 2000);
  EXPECT_EQ(delta({.size = 100, .growth = {GetParam()}}).status, -13);
  store({volume(0), volume(3)}, 3000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(3).reported() + gone_virtual_drive(volume(1)));
}

INSTANTIATE_TEST_SUITE_P(, RefusedVirtualDriveReply,
                         Values(Growth::kRefuse, Growth::kGrantLess, Growth::kNull, Growth::kSayNothing));

// -------------------------------------------------------------------------------------- sizes that do not fit 32 bits

class VirtualDriveFileBeyondAnyReply : public VirtualDriveTest, public testing::WithParamInterface<uint64_t> {};

TEST_P(VirtualDriveFileBeyondAnyReply, IsRefusedAtOnce) {
  store({volume(0)});
  files.resize(kVirtualDriveStore, GetParam());
  trace_at(3);

  const Reply reply = full({.size = 20000});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), virtual_drives_too_large(20000, 20000));
  EXPECT_EQ(number_of_calls("fread"), 0);
  EXPECT_EQ(number_of_calls("realloc"), 0);
  EXPECT_EQ(delta().length, 0u);  // the change has been consumed
}

// With the header, the first one is 2^32.
INSTANTIATE_TEST_SUITE_P(, VirtualDriveFileBeyondAnyReply,
                         Values(uint64_t{0xFFFFFFFF} - 16, uint64_t{0xFFFFFFFF}, uint64_t{0x100000000},
                                uint64_t{0x100000000} + kVirtualDriveSize, uint64_t{0xFF00000000}));

// The file has these sizes when it is locked, and is emptied before it is read.
class HugeVirtualDriveFiles : public VirtualDriveTest {
 protected:
  Reply retrieve_of(uint64_t size) {
    files.resize(kVirtualDriveStore, size, 2000);
    forget_calls();
    before_call("fread", 1, [this] { files.resize(kVirtualDriveStore, 0, 2000); });
    return delta({.size = 20000, .growth = {Growth::kRefuse}});
  }
};

TEST_F(HugeVirtualDriveFiles, ThatJustFitAreAskedFor) {
  store({});
  trace_at(3);

  const Reply reply = retrieve_of(0xFFFFFFFF - 17);

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFFFF));
  EXPECT_EQ(trace(), virtual_drives_too_large(20000, 20000));
}

TEST_F(HugeVirtualDriveFiles, ThatJustFitWithTheGoneDrivesAreAskedFor) {
  remember({volume(0), volume(1)});

  EXPECT_THAT(retrieve_of(0xFFFFFFFF - length_of(2)).requests, ElementsAre(0xFFFFFFFF));
}

TEST_F(HugeVirtualDriveFiles, ThatDoNotFitWithTheGoneDrivesAreRefused) {
  remember({volume(0), volume(1)});
  trace_at(3);

  const Reply reply = retrieve_of(0xFFFFFFFF - length_of(2) + 1);

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), virtual_drives_too_large(20000, 20000));
}

}  // namespace
}  // namespace tests
