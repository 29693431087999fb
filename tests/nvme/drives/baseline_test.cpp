// What the drives' calls remember of each other.

#include <gmock/gmock.h>

#include <cerrno>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NvmeDriveBaseline : public NvmeDriveTest {
 protected:
  const NvmeDrive a_{.slot = "A"};
  const NvmeDrive b_{.slot = "B"};

  void remember(const std::vector<NvmeDrive> &drives) {
    store(nvme_drive_file(kMainPower, drives));
    full();
  }

  // Drive B as a deleted one, where A was read and not reported.
  std::string deleted_b() const {
    NvmeDrive deleted = a_;
    deleted.slot = "B";
    return drive_summary(1) + deleted.xml("Deleted");
  }
};

class UneventfulState : public NvmeDriveBaseline, public testing::WithParamInterface<uint8_t> {};

TEST_P(UneventfulState, AnswersNothingWhileItStays) {
  store(nvme_drive_file(GetParam(), {NvmeDrive()}));
  full();
  store(nvme_drive_file(GetParam(), {NvmeDrive{.stamp = 2}}), 2000);

  EXPECT_EQ(event().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(States, UneventfulState, testing::Values(0, 1, 2, 3, 5, 200, 255));

TEST_F(NvmeDriveBaseline, AnEarlierTimeIsAChangeToo) {
  remember({a_});
  store(nvme_drive_file(kMainPower, {b_}), 999);

  EXPECT_NE(event().length, 0u);
}

TEST_F(NvmeDriveBaseline, TimesHave64Bits) {
  const int64_t same_low_half = 1000 + (int64_t{1} << 32);
  remember({NvmeDrive()});
  store(nvme_drive_file(kAuxPower, {NvmeDrive{.stamp = 2}}), same_low_half);
  EXPECT_EQ(text_of(event()), drive_summary(1, "Aux_Power") + NvmeDrive().xml());
  store(nvme_drive_file(kMainPower, {NvmeDrive{.stamp = 2}}), 1000);
  event();

  EXPECT_THAT(system_log(),
              ElementsAre("mcserver_nvme.cpp:460:NVME subsystem state changed, prevState(4), newState(3), "
                          "prevModTime(1000, Thu Jan  1 00:16:40 1970\n), "
                          "curModTime(4294968296, Sun Feb  7 06:44:56 2106\n)\n",
                          "mcserver_nvme.cpp:539:NVME subsystem state changed",
                          "mcserver_nvme.cpp:460:NVME subsystem state changed, prevState(3), newState(4), "
                          "prevModTime(4294968296, Sun Feb  7 06:44:56 2106\n), "
                          "curModTime(1000, Thu Jan  1 00:16:40 1970\n)\n"));
}

TEST_F(NvmeDriveBaseline, StatesAreUnsignedAndUnlikeNone) {
  store(nvme_drive_file(255, {NvmeDrive()}));
  event();
  store(nvme_drive_file(200, {NvmeDrive()}), 2000);
  event();

  const std::vector<std::string> lines = system_log();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[0], testing::HasSubstr("prevState(-1), newState(255)"));
  EXPECT_EQ(lines[1], "mcserver_nvme.cpp:539:NVME subsystem state changed");
  EXPECT_THAT(lines[2], testing::HasSubstr("prevState(255), newState(200)"));
}

TEST_F(NvmeDriveBaseline, AShortHeaderLeavesTheList) {
  remember({a_, b_});
  store(Bytes().fill(4, 1), 2000);
  EXPECT_EQ(event().status, -37);
  store(nvme_drive_file(kMainPower, {a_}), 3000);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeDriveBaseline, AFailedImageLeavesTheListAndSaysNothing) {
  remember({a_, b_});
  store(nvme_drive_file(kMainPower, {a_}), 2000);
  trace_at(9);
  fail("calloc", 1, ENOMEM);
  EXPECT_EQ(event().status, -35);
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
  store(nvme_drive_file(kMainPower, {a_}), 3000);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeDriveBaseline, AnUneventfulStateLeavesTheList) {
  store(nvme_drive_file(kAuxPower, {a_, b_}));
  full();
  store(nvme_drive_file(kAuxPower, {}), 2000);
  EXPECT_EQ(event().length, 0u);
  store(nvme_drive_file(kMainPower, {a_}), 3000);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeDriveBaseline, AFailureToLockLeavesEverything) {
  remember({a_, b_});
  fail("flock", 1, EINTR);
  EXPECT_EQ(event().status, -35);
  EXPECT_EQ(event().length, 0u);  // still known, and so is its time
  store(nvme_drive_file(kMainPower, {a_}), 2000);
  fail("flock", 1, EINTR);
  EXPECT_EQ(event().status, -35);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeDriveBaseline, AllOfATimeStampIsRemembered) {
  remember({NvmeDrive{.stamp = 0x01020304}});
  store(nvme_drive_file(kMainPower, {NvmeDrive{.stamp = 0x01020304}}), 2000);

  EXPECT_EQ(event().length, 0u);
  store(nvme_drive_file(kMainPower, {NvmeDrive{.stamp = 0x81020304}}), 3000);
  EXPECT_NE(event().length, 0u);
}

TEST_F(NvmeDriveBaseline, FullNamesAreKeptOfADeletedDrive) {
  remember({a_, NvmeDrive{.slot = std::string(16, 'S'), .serial = std::string(31, 'N')}});
  store(nvme_drive_file(kMainPower, {a_}), 2000);

  const std::string xml = text_of(event());

  // A full slot name runs on into the controller's.
  EXPECT_THAT(xml, testing::HasSubstr("smbios-pcislotname=\"" + std::string(16, 'S') + "NVME-C1\" "));
  EXPECT_THAT(xml, testing::HasSubstr("serial-number=\"" + std::string(31, 'N') + "FW1.0\" "));
}

}  // namespace
}  // namespace tests
