#include <gmock/gmock.h>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::IsEmpty;

class NvmeDrives : public NvmeDriveTest {};

TEST_F(NvmeDrives, FullInventoryIsOneLineOfXml) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(text_of(reply), drive_summary(2) + NvmeDrive{.slot = "A"}.xml() + NvmeDrive{.slot = "B"}.xml());
  EXPECT_EQ(reply.buffer[reply.length], kUntouched);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeDrives, FullInventoryWithoutDrivesIsTheSummary) {
  store(nvme_drive_file(0, 1, {}));

  EXPECT_EQ(text_of(full()), drive_summary(0, "Uninitialized"));
}

TEST_F(NvmeDrives, FullInventoryIgnoresTimeAndState) {
  store(nvme_drive_file(kAuxPower, {NvmeDrive()}));

  EXPECT_EQ(text_of(full()), drive_summary(1, "Aux_Power") + NvmeDrive().xml());
  EXPECT_EQ(text_of(full()), drive_summary(1, "Aux_Power") + NvmeDrive().xml());
}

TEST_F(NvmeDrives, AFlagOtherThanZeroIsEventMode) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  HostReplyBuffer buffer(65536, {Growth::kInPlace});
  uint32_t length = kUnwrittenLength;

  const auto get = PLUGIN(get_nvme_phy_drive_info);

  EXPECT_EQ(get(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(), &length, 2), 0);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(get(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(), &length, 0), 0);
  EXPECT_NE(length, 0u);
}

TEST_F(NvmeDrives, MoreDrivesThanAnnouncedAreDroppedWithATrace) {
  trace_at(3);
  store(nvme_drive_file(1, kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}, NvmeDrive{.slot = "C"}}));

  const Reply reply = full();

  EXPECT_EQ(text_of(reply), drive_summary(1) + NvmeDrive{.slot = "A"}.xml());
  const std::string lines = trace();
  EXPECT_THAT(lines,
              testing::StartsWith("<get_nvme_phy_drive_info: 512> [get_nvme_phy_drive_info]Error: File "
                                  "/var/nvmephydrive_info has more entries than initially passed max value of 1\n"
                                  "<get_nvme_phy_drive_info: 545> [get_nvme_phy_drive_info]Error reading file "
                                  "/var/nvmephydrive_info, "));
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2);
}

TEST_F(NvmeDrives, TheDroppedRecordShowsUnderADeletedDrive) {
  store(nvme_drive_file(2, kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));
  full();
  const NvmeDrive dropped{.slot = "C", .product_name = "DROPPED"};
  store(nvme_drive_file(1, kMainPower, {NvmeDrive{.slot = "A"}, dropped}), 2000);

  NvmeDrive deleted = dropped;
  deleted.slot = "B";
  EXPECT_EQ(text_of(event()), drive_summary(1) + deleted.xml("Deleted"));
}

TEST_F(NvmeDrives, OnlyTheLowHalfOfTheAnnouncedNumberCounts) {
  trace_at(3);
  store(nvme_drive_file(65537, kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));

  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive{.slot = "A"}.xml());
  EXPECT_THAT(trace(), testing::HasSubstr("more entries than initially passed max value of 1\n"));
}

TEST_F(NvmeDrives, AnAnnouncedNumberOfNoneIsNoFailure) {
  for (const uint32_t announced : {0u, 65536u}) {
    store(nvme_drive_file(announced, kMainPower, {NvmeDrive()}));

    EXPECT_EQ(text_of(full()), drive_summary(0));
  }
}

TEST_F(NvmeDrives, TheListsGrowWithTheAnnouncedNumber) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "0"}}));
  full();
  std::vector<NvmeDrive> drives;
  std::string xml;
  for (int i = 0; i < 300; ++i) {
    drives.push_back(NvmeDrive{.slot = std::to_string(i)});
    if (i > 0) xml += drives.back().xml();
  }
  store(nvme_drive_file(kMainPower, drives), 2000);

  EXPECT_EQ(text_of(event({.size = 1u << 20})), drive_summary(299) + xml);
  store(nvme_drive_file(kMainPower, drives), 3000);
  EXPECT_EQ(event().length, 0u);
}

TEST_F(NvmeDrives, ManyDrivesWorkToo) {
  std::vector<NvmeDrive> drives;
  std::string xml;
  for (int i = 0; i < 5000; ++i) {
    drives.push_back(NvmeDrive{.slot = std::to_string(i)});
    xml += drives.back().xml();
  }
  store(nvme_drive_file(kMainPower, drives));

  EXPECT_TRUE(text_of(full({.growth = {Growth::kMove}})) == drive_summary(5000) + xml);  // too long to be shown
}

}  // namespace
}  // namespace tests
