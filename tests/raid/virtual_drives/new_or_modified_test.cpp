#include <gmock/gmock.h>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

class NewVirtualDriveOrModified : public VirtualDriveTest {
 protected:
  int32_t compare(const VirtualDrive &drive, uint16_t count) {
    const Bytes record = drive.stored();
    return PLUGIN(new_virtdrive_or_modified)(reinterpret_cast<const StorVirtDriveInfo *>(record.data()), list.data(),
                                             count);
  }

  const std::vector<VdSummary> list = {{1, 2, "S", "one", 7}, {1, 2, "S", "one", 8}, {1, 3, "T", "two", 0x00010203}};
};

TEST_F(NewVirtualDriveOrModified, IsZeroForAKnownDrive) {
  EXPECT_EQ(compare({.guid = "T", .stamp = 0x00010203}, 3), 0);
  EXPECT_EQ(compare({.controller = 9, .target = 9, .guid = "T", .name = "nine", .stamp = 0x00010203}, 3), 0);
}

TEST_F(NewVirtualDriveOrModified, IsOneForAnotherStamp) {
  EXPECT_EQ(compare({.guid = "T", .stamp = 0x00010204}, 3), 1);
  EXPECT_EQ(compare({.guid = "T", .stamp = 0x03020100}, 3), 1);
}

TEST_F(NewVirtualDriveOrModified, IsOneForAnUnknownDrive) {
  EXPECT_EQ(compare({.guid = "U", .stamp = 7}, 3), 1);
  EXPECT_EQ(compare({.guid = "T", .stamp = 0x00010203}, 2), 1);
  EXPECT_EQ(compare({.guid = "S", .stamp = 7}, 0), 1);
}

TEST_F(NewVirtualDriveOrModified, GoesByTheFirstEntry) {
  EXPECT_EQ(compare({.guid = "S", .stamp = 7}, 3), 0);
  EXPECT_EQ(compare({.guid = "S", .stamp = 8}, 3), 1);
}

TEST_F(NewVirtualDriveOrModified, IsZeroForANullArgument) {
  const Bytes record = volume(0).stored();

  EXPECT_EQ(PLUGIN(new_virtdrive_or_modified)(nullptr, list.data(), 3), 0);
  EXPECT_EQ(PLUGIN(new_virtdrive_or_modified)(reinterpret_cast<const StorVirtDriveInfo *>(record.data()), nullptr, 3),
            0);
}

}  // namespace
}  // namespace tests
