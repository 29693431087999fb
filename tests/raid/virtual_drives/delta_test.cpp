#include <gmock/gmock.h>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::Values;

class VirtualDriveDelta : public VirtualDriveTest {};

TEST_F(VirtualDriveDelta, TheFirstReportsEveryDriveAndNoneAsGone) {
  store({volume(0), volume(1, kOrdinary)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, length_of(2));
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0), volume(1, kOrdinary)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

// ------------------------------------------------------------------------------------------------ the file's time

TEST_F(VirtualDriveDelta, OfAnUnchangedFileIsEmptyWhateverTheFileHolds) {
  remember({volume(0), volume(1)});
  store({volume(5)}, 1000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  EXPECT_EQ(number_of_calls("fread"), 0);
  EXPECT_EQ(number_of_calls("flock 8"), 1);
}

TEST_F(VirtualDriveDelta, OfAnUnchangedFileLeavesTheListsAlone) {
  remember({volume(0)});
  store({}, 1000);
  delta();
  store({volume(0)}, 2000);

  EXPECT_EQ(delta().length, 0u);  // still known
}

TEST_F(VirtualDriveDelta, AFileTimeOfZeroCountsAsSeen) {
  store({volume(0)}, 0);

  EXPECT_EQ(delta().length, 0u);
  EXPECT_EQ(full().length, length_of(1));
}

TEST_F(VirtualDriveDelta, AnEarlierFileTimeIsAChangeToo) {
  remember({volume(0)});
  store({volume(0), volume(1)}, 500);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(1)}));
}

TEST_F(VirtualDriveDelta, AFullCallIsNotKeptFromAnUnchangedFile) {
  remember({volume(0)});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveDelta, AFileTimeOfSixtyFourBitsIsComparedInFull) {
  store({volume(0)}, 0x100000000 + 1000);
  full();
  store({volume(0), volume(1)}, 1000);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(1)}));
}

// ----------------------------------------------------------------- the comparison, which follows the conversion

class StampThatReadsTheSameInBothOrders : public VirtualDriveTest, public testing::WithParamInterface<uint32_t> {};

TEST_P(StampThatReadsTheSameInBothOrders, IsReportedOnlyOnce) {
  remember({volume(0, GetParam())});
  store({volume(0, GetParam())}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer.slice(0, 17), virtual_drive_header(0));
}

INSTANTIATE_TEST_SUITE_P(, StampThatReadsTheSameInBothOrders,
                         Values(0x00000000, 0x01000001, 0x00FFFF00, 0xABCDCDAB, 0xFFFFFFFF));

class StampThatReadsDifferently : public VirtualDriveTest, public testing::WithParamInterface<uint32_t> {};

TEST_P(StampThatReadsDifferently, IsReportedWheneverTheFileWasWritten) {
  remember({volume(0, GetParam())});
  for (const int64_t modified : {2000, 3000}) {
    store({volume(0, GetParam())}, modified);

    EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0, GetParam())}));
    EXPECT_EQ(delta().length, 0u);
  }
}

// The digits of one of them are the same backwards, its bytes are not.
INSTANTIATE_TEST_SUITE_P(, StampThatReadsDifferently,
                         Values(0x00000001, 0x01000000, 0x00010000, 0x01020201 + 1, 0xABCDDCBA, 0xFFFFFFFE));

TEST_F(VirtualDriveDelta, AStampWithItsBytesExchangedIsNoNews) {
  remember({volume(0, 0x01020304)});
  store({volume(0, 0x04030201)}, 2000);

  EXPECT_EQ(delta().length, 0u);
  store({volume(0, 0x04030201)}, 3000);
  EXPECT_EQ(delta().length, length_of(1));  // it is remembered in the order of the file
}

TEST_F(VirtualDriveDelta, AnotherStampIsAModification) {
  remember({volume(0, 0x02000002), volume(1, 0x02000002)});
  store({volume(0, 0x01000001), volume(1, 0x03000003)}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0, 0x01000001), volume(1, 0x03000003)}));
}

TEST_F(VirtualDriveDelta, WithoutANewStampOtherDataAreNoNews) {
  VirtualDrive drive = volume(0);
  remember({drive});
  drive.status = 4;
  drive.size = 5;
  store({drive}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(VirtualDriveDelta, ReportsNewAndModifiedDrivesInTheFilesOrder) {
  remember({volume(0), volume(1), volume(2)});
  store({volume(3), volume(0), volume(2, kOrdinary), volume(1)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(3), volume(2, kOrdinary)}));
  EXPECT_EQ(slot(reply, 2), volume(1).skipped());
}

TEST_F(VirtualDriveDelta, ConvertsASkippedRecordOnlyAsFarAsTheComparison) {
  remember({volume(0)});
  store({volume(0)}, 2000);

  EXPECT_EQ(slot(delta(), 0), volume(0).skipped());
}

TEST_F(VirtualDriveDelta, ComparesWithThePreviousCallWhateverItsMode) {
  remember({volume(0, 0x02000002)});
  store({volume(0, 0x03000003)}, 2000);
  EXPECT_EQ(delta().length, length_of(1));
  store({volume(0, 0x03000003)}, 3000);
  EXPECT_EQ(delta().length, 0u);
  store({volume(0, 0x04000004)}, 4000);
  full();
  store({volume(0, 0x04000004)}, 5000);
  EXPECT_EQ(delta().length, 0u);
}

// ------------------------------------------------------------------------------------------------------- duplicates

TEST_F(VirtualDriveDelta, DrivesWithTheSameGuidAreAllReported) {
  VirtualDrive other = volume(0);
  other.name = "other";
  store({volume(0), other});

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0), other}));
}

TEST_F(VirtualDriveDelta, TheFirstOfTwoEqualDrivesDecides) {
  remember({volume(0, 0x02000002), volume(0, 0x03000003)});
  store({volume(0, 0x02000002)}, 2000);
  EXPECT_EQ(delta().length, 0u);
  remember({volume(0, 0x02000002), volume(0, 0x03000003)});
  store({volume(0, 0x03000003)}, 3000);
  EXPECT_EQ(delta().length, length_of(1));
}

// ------------------------------------------------------------------------------------------------------ identity

struct GuidDifference {
  std::string name;
  std::string known;
  std::string stored;
};
void PrintTo(const GuidDifference &difference, std::ostream *out) { *out << difference.name; }

class VirtualDriveIdentity : public VirtualDriveTest, public testing::WithParamInterface<GuidDifference> {};

TEST_P(VirtualDriveIdentity, TellsDrivesApartBy) {
  const VirtualDrive known = {.guid = GetParam().known, .name = ""};
  const VirtualDrive other = {.guid = GetParam().stored, .name = ""};
  remember({known});
  store({other}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + other.reported() + gone_virtual_drive(known));
}

INSTANTIATE_TEST_SUITE_P(, VirtualDriveIdentity,
                         Values(GuidDifference{"a character", "A", "B"}, GuidDifference{"case", "A", "a"},
                                GuidDifference{"a longer GUID", "A", "AA"}, GuidDifference{"a shorter GUID", "AA", "A"},
                                GuidDifference{"the empty GUID", "A", ""},
                                GuidDifference{"the last character", std::string(33, 'G'), std::string(32, 'G') + "H"},
                                GuidDifference{"a field that is full", std::string(32, 'G'), std::string(33, 'G')}));

TEST_F(VirtualDriveDelta, NothingButTheGuidIsTheIdentity) {
  remember({{.controller = 1, .target = 2, .guid = "G", .name = "one", .status = 0, .stamp = kSymmetric}});
  store({{.controller = 3, .target = 4, .guid = "G", .name = "two", .status = 1, .stamp = kSymmetric}}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(VirtualDriveDelta, WhatFollowsTheGuidsNulPlaysNoPart) {
  remember({volume(0)});
  files.write(kVirtualDriveStore, volume(0).stored().put(2 + 7, Bytes().u8('x')), 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(VirtualDriveDelta, GuidsWithoutANulAreComparedWithinTheirField) {
  VirtualDrive drive = {.guid = std::string(33, 'G'), .name = "one"};
  remember({drive});
  drive.name = "two";  // the text behind the GUID
  store({drive}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

// ----------------------------------------------------------------------------------------------------- odd flags

class OddVirtualDriveFlag : public VirtualDriveTest, public testing::WithParamInterface<int32_t> {};

TEST_P(OddVirtualDriveFlag, RepliesLikeAFullCallButHasNoLength) {
  remember({volume(0), volume(1)});
  store({volume(0)}, 1000);

  const Reply reply = retrieve(GetParam());

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer.slice(0, length_of(1)), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(slot(reply, 1), untouched_virtual_drive_slot());
}

TEST_P(OddVirtualDriveFlag, RemembersLikeAFullCall) {
  store({volume(0), volume(1)});
  retrieve(GetParam());
  EXPECT_EQ(delta().length, 0u);
  store({volume(1), volume(2)}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(2).reported() + gone_virtual_drive(volume(0)));
}

INSTANTIATE_TEST_SUITE_P(, OddVirtualDriveFlag, Values(2, -1, 256));

}  // namespace
}  // namespace tests
