#include <gmock/gmock.h>

#include <cerrno>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

class DriveDelta : public DriveTest {};

TEST_F(DriveDelta, TheFirstReportsEveryDriveAndNoneAsGone) {
  store({numbered_drive(0), numbered_drive(1)});

  EXPECT_EQ(delta().bytes(), drive_reply(2, {numbered_drive(0), numbered_drive(1)}));
}

TEST_F(DriveDelta, OfAnUnchangedFileIsEmptyWhateverTheFileHolds) {
  store({numbered_drive(0), numbered_drive(1)});
  full();
  store({numbered_drive(5)}, 1000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
}

TEST_F(DriveDelta, OfAnUnchangedFileLeavesTheListsAlone) {
  store({numbered_drive(0)});
  full();
  store({}, 1000);
  delta();
  store({numbered_drive(0)}, 2000);

  EXPECT_EQ(delta().length, 0u);  // still known
}

TEST_F(DriveDelta, AFileTimeOfZeroCountsAsSeen) {
  store({numbered_drive(0)}, 0);

  EXPECT_EQ(delta().length, 0u);
  EXPECT_EQ(full().length, drive_reply_size(1));
}

TEST_F(DriveDelta, AnEarlierFileTimeIsAChangeToo) {
  store({numbered_drive(0)}, 2000);
  full();
  store({numbered_drive(0, 2)}, 1000);

  EXPECT_EQ(delta().bytes(), drive_reply(1, {numbered_drive(0, 2)}));
}

TEST_F(DriveDelta, WithoutNewsHasNoLengthButAHeader) {
  store({numbered_drive(0)});
  full();
  store({numbered_drive(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer.slice(0, 20), drive_header(1, 0));
}

TEST_F(DriveDelta, ReportsNewAndModifiedDrivesInTheFilesOrder) {
  store({numbered_drive(0), numbered_drive(1)});
  full();
  store({numbered_drive(2), numbered_drive(0), numbered_drive(1, 9)}, 2000);

  EXPECT_EQ(delta().bytes(), drive_header(3, 2) + numbered_drive(2).reported() + numbered_drive(1, 9).reported());
}

TEST_F(DriveDelta, ComparesWithThePreviousCallWhateverItsMode) {
  store({numbered_drive(0)});
  full();
  store({numbered_drive(0, 2)}, 2000);
  EXPECT_EQ(delta().length, drive_reply_size(1));
  store({numbered_drive(0, 2)}, 3000);
  EXPECT_EQ(delta().length, 0u);
  store({numbered_drive(0, 3)}, 4000);
  full();
  store({numbered_drive(0, 3)}, 5000);
  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DriveDelta, ASmallerStampIsAModificationToo) {
  store({numbered_drive(0, 0xFFFFFFFF)});
  full();
  store({numbered_drive(0, 0)}, 2000);

  EXPECT_EQ(delta().bytes(), drive_reply(1, {numbered_drive(0, 0)}));
}

TEST_F(DriveDelta, WithoutANewStampOtherDataAreNoNews) {
  Drive drive = numbered_drive(0);
  store({drive});
  full();
  drive.status = 99;
  store({drive}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DriveDelta, TheFirstOfTwoEqualDrivesDecides) {
  store({numbered_drive(0, 1), numbered_drive(0, 2)});
  full();
  store({numbered_drive(0, 1)}, 2000);
  EXPECT_EQ(delta().length, 0u);
  store({numbered_drive(0, 2)}, 3000);
  EXPECT_EQ(delta().length, drive_reply_size(1));
}

// ------------------------------------------------------------------------------------------------------ identity

struct Difference {
  const char *name;
  Drive drive;
};
void PrintTo(const Difference &difference, std::ostream *out) { *out << difference.name; }

class DriveIdentity : public DriveTest, public testing::WithParamInterface<Difference> {};

TEST_P(DriveIdentity, TellsDrivesApartBy) {
  const Drive known = {.controller = 1, .slot = 2, .serial = "S"};
  store({known});
  full();
  store({GetParam().drive}, 2000);

  EXPECT_EQ(delta().bytes(),
            drive_header(1, 2) + GetParam().drive.reported() + gone_drive(known, untouched_drive_slot()));
}

INSTANTIATE_TEST_SUITE_P(
    , DriveIdentity,
    testing::Values(Difference{"controller", {.controller = 3, .slot = 2, .serial = "S"}},
                    Difference{"slot", {.controller = 1, .slot = 3, .serial = "S"}},
                    Difference{"serial number", {.controller = 1, .slot = 2, .serial = "T"}},
                    Difference{"case", {.controller = 1, .slot = 2, .serial = "s"}},
                    Difference{"a longer serial number", {.controller = 1, .slot = 2, .serial = "SS"}},
                    Difference{"the empty serial number", {.controller = 1, .slot = 2, .serial = ""}}));

TEST_F(DriveDelta, WhatFollowsTheSerialNumbersNulPlaysNoPart) {
  store({numbered_drive(0)});
  full();
  files.write(kDriveStore, little_endian().u32(1) + numbered_drive(0).stored().put(95, Bytes().u8('x')), 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DriveDelta, SerialNumbersWithoutANulAreComparedWithinTheirField) {
  Drive drive = {.serial = std::string(21, 'S'), .status = 1};
  store({drive});
  full();
  drive.status = 2;  // the byte behind the serial number
  store({drive}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

// ------------------------------------------------------------------------------------------- the exported comparison

class NewDriveOrModified : public DriveTest {
 protected:
  int32_t compare(const Drive &drive, uint16_t count) {
    const Bytes record = drive.stored();
    return PLUGIN(new_drive_or_modified)(reinterpret_cast<const StorPhyDriveInfo *>(record.data()), list.data(), count);
  }

  const std::vector<PhyDriveSummary> list = {{1, 2, "S", 7}, {1, 2, "S", 8}, {1, 3, "T", 9}};
};

TEST_F(NewDriveOrModified, IsZeroForAKnownDrive) {
  EXPECT_EQ(compare({.controller = 1, .slot = 3, .serial = "T", .stamp = 9}, 3), 0);
}

TEST_F(NewDriveOrModified, IsOneForAnotherStamp) {
  EXPECT_EQ(compare({.controller = 1, .slot = 3, .serial = "T", .stamp = 8}, 3), 1);
}

TEST_F(NewDriveOrModified, IsOneForAnUnknownDrive) {
  EXPECT_EQ(compare({.controller = 1, .slot = 4, .serial = "T", .stamp = 9}, 3), 1);
  EXPECT_EQ(compare({.controller = 1, .slot = 3, .serial = "T", .stamp = 9}, 2), 1);
  EXPECT_EQ(compare({.controller = 1, .slot = 2, .serial = "S", .stamp = 7}, 0), 1);
}

TEST_F(NewDriveOrModified, GoesByTheFirstEntry) {
  EXPECT_EQ(compare({.controller = 1, .slot = 2, .serial = "S", .stamp = 7}, 3), 0);
  EXPECT_EQ(compare({.controller = 1, .slot = 2, .serial = "S", .stamp = 8}, 3), 1);
}

TEST_F(NewDriveOrModified, IsZeroForANullArgument) {
  const Bytes record = numbered_drive(0).stored();

  EXPECT_EQ(PLUGIN(new_drive_or_modified)(nullptr, list.data(), 3), 0);
  EXPECT_EQ(PLUGIN(new_drive_or_modified)(reinterpret_cast<const StorPhyDriveInfo *>(record.data()), nullptr, 0), 0);
}

}  // namespace
}  // namespace tests
