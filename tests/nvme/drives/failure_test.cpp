#include <gmock/gmock.h>

#include <filesystem>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NvmeDriveFailures : public NvmeDriveTest {};

TEST_F(NvmeDriveFailures, AMissingFileIsNoData) {
  trace_at(3);
  EXPECT_EQ(full().status, -37);
  files.remove(kNvmeControllerStore);
  EXPECT_EQ(full().status, -37);

  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeDriveFailures, AShortHeaderIsNoDataAndMovesTheTime) {
  trace_at(3);
  store(Bytes().fill(4, 1), 2000);
  EXPECT_EQ(full().status, -37);
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
  store(nvme_drive_file(kMainPower, {NvmeDrive()}), 2000);

  const Reply reply = event();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(NvmeDriveFailures, AHeaderBeyondTheSizeAtStatIsNotRead) {
  store(Bytes().fill(4, 1));
  before_call("fread", 1, [this] { store(nvme_drive_file(kMainPower, {NvmeDrive()})); });

  EXPECT_EQ(full().status, -37);
}

TEST_F(NvmeDriveFailures, AReadErrorIsTracedAndKeepsWhatWasRead) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));
  fail("fread", 3, EIO);

  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive{.slot = "A"}.xml());
  EXPECT_EQ(trace(),
            "<get_nvme_phy_drive_info: 545> [get_nvme_phy_drive_info]Error reading file /var/nvmephydrive_info, "
            "Input/output error\n");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeDriveFailures, AFailedImageIsUnavailable) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  fail("calloc", 1, ENOMEM);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(NvmeDriveFailures, AFailedCurListIsTraced) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  fail("calloc", 2, ENOMEM);

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(), "<get_nvme_phy_drive_info: 488> [get_nvme_phy_drive_info]cur_pd_list memory allocation failed\n");
  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive().xml());
}

TEST_F(NvmeDriveFailures, AFailedCachedListIsTracedAndFreesTheCurList) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  fail("calloc", 3, ENOMEM);

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<get_nvme_phy_drive_info: 499> [get_nvme_phy_drive_info]cached_pd_list memory allocation failed\n");
  forget_calls();
  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive().xml());
  EXPECT_EQ(std::count(calls().begin(), calls().end(), "calloc"), 4);  // the image, both lists, the text
}

TEST_F(NvmeDriveFailures, ListsThatCannotGrowAreKept) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}}));
  full();
  const Bytes swapped = nvme_drive_file(kMainPower, {NvmeDrive{.slot = "B"}, NvmeDrive{.slot = "C"}});
  store(swapped, 2000);
  fail("realloc", 1, ENOMEM);
  EXPECT_EQ(event().status, -35);
  store(swapped, 3000);

  EXPECT_EQ(text_of(event()).substr(0, 45), drive_summary(3).substr(0, 45));
}

TEST_F(NvmeDriveFailures, AFailedTextHasNoBuffer) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  fail("calloc", 4, ENOMEM);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -4);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(
      trace(),
      "<get_nvme_phy_drive_info: 569> [get_nvme_phy_drive_info]get_nvme_phy_drive_info: xmlBuf calloc(1124) failed: "
      "Cannot allocate memory!\n");
}

TEST_F(NvmeDriveFailures, ABufferOfExactlyTheTextIsEnough) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  const auto length = static_cast<uint32_t>((drive_summary(1) + NvmeDrive().xml()).size());

  EXPECT_THAT(full({.size = length}).requests, IsEmpty());
  EXPECT_THAT(full({.size = length - 1}).requests, ElementsAre(length));
}

TEST_F(NvmeDriveFailures, EveryGrantIsUsed) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));

  for (const Growth growth : {Growth::kInPlace, Growth::kMove, Growth::kSayNothing})
    EXPECT_EQ(text_of(full({.size = 1, .growth = {growth}})), drive_summary(1) + NvmeDrive().xml());
}

TEST_F(NvmeDriveFailures, EveryRefusalHasNoBuffer) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));

  for (const Growth growth : {Growth::kRefuse, Growth::kGrantLess, Growth::kNull}) {
    const Reply reply = full({.size = 1, .growth = {growth}});
    EXPECT_EQ(reply.status, -4);
    EXPECT_EQ(reply.length, 0u);
  }
}

TEST_F(NvmeDriveFailures, ANullReplyIsRefusedOnlyIfItWouldBeWritten) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  HostReplyBuffer buffer(16, {Growth::kMove});
  uint32_t length = kUnwrittenLength;
  const auto get = PLUGIN(get_nvme_phy_drive_info);

  EXPECT_EQ(get(static_cast<host::ReplyOwner *>(&buffer), nullptr, 65536, &length, 0), -35);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(get(static_cast<host::ReplyOwner *>(&buffer), nullptr, 0, &length, 0), 0);
  EXPECT_EQ(length, (drive_summary(1) + NvmeDrive().xml()).size());
}

TEST_F(NvmeDriveFailures, ANullLengthIsRefused) {
  const auto get = PLUGIN(get_nvme_phy_drive_info);

  EXPECT_EQ(get(nullptr, nullptr, 0, nullptr, 0), -35);
}

TEST_F(NvmeDriveFailures, EveryFailureOfTheLockClearsTheLength) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  for (const char *function : {"fopen", "fileno", "flock", "stat"}) {
    fail(function, 1, EIO);
    const Reply reply = full();

    EXPECT_EQ(reply.status, std::string(function) == "stat" ? -37 : -35);
    EXPECT_EQ(reply.length, 0u);
  }
}

TEST_F(NvmeDriveFailures, AFileThatVanishesBeforeItIsOpenedIsUnavailable) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  before_call("fopen", 2, [this] { files.remove(kNvmeDriveStore); });

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 248> [getlock_and_open_file]/var/nvmephydrive_info Open failed: No such file or "
            "directory");
}

TEST_F(NvmeDriveFailures, AnImageBeyond32BitsIsNone) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  std::filesystem::resize_file(files.real(kNvmeDriveStore), (uint64_t{1} << 32) + 1);

  EXPECT_EQ(full().status, -35);
}

TEST_F(NvmeDriveFailures, AFailedImageHasStoredTheState) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kAuxPower, {}), 2000);
  fail("calloc", 1, ENOMEM);
  EXPECT_EQ(event().status, -35);
  system_log();
  store(nvme_drive_file(kAuxPower, {}), 3000);

  EXPECT_EQ(event().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeDriveFailures, ListsOfNoEntriesNeedNoMemory) {
  store(nvme_drive_file(65536, kMainPower, {}));

  EXPECT_EQ(text_of(full()), drive_summary(0));
  EXPECT_EQ(std::count(calls().begin(), calls().end(), "calloc"), 2);  // the image, the text
}

TEST_F(NvmeDriveFailures, AListThatCannotGrowIsTraced) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kMainPower, {NvmeDrive(), NvmeDrive{.slot = "B"}}), 2000);
  fail("realloc", 1, ENOMEM);

  EXPECT_EQ(event().status, -35);
  EXPECT_EQ(trace(), "<get_nvme_phy_drive_info: 488> [get_nvme_phy_drive_info]cur_pd_list memory allocation failed\n");
  store(nvme_drive_file(kMainPower, {NvmeDrive()}), 3000);
  EXPECT_EQ(event().length, 0u);  // both lists were kept, and the drive is known
}

TEST_F(NvmeDriveFailures, NoMemoryIsAskedForDrivesThatAreOnlyAnnounced) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(9, kMainPower, {NvmeDrive()}), 2000);
  fail("realloc", 1, ENOMEM);

  EXPECT_EQ(event().status, 0);
}

TEST_F(NvmeDriveFailures, AHeaderThatCannotBeReadIsNoData) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  fail("fread", 1, EIO);

  EXPECT_EQ(full().status, -37);
}

TEST_F(NvmeDriveFailures, ARefusedReplyHasConsumedTheNews) {
  store(nvme_drive_file(kMainPower, {}));
  full();
  store(nvme_drive_file(kMainPower, {NvmeDrive()}), 2000);
  EXPECT_EQ(event({.size = 1, .growth = {Growth::kRefuse}}).status, -4);
  store(nvme_drive_file(kMainPower, {NvmeDrive()}), 3000);

  EXPECT_EQ(event().length, 0u);
}

TEST_F(NvmeDriveFailures, AFileThatChangesItsSizeJustEnds) {
  trace_at(3);
  store(nvme_drive_file(2, kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));
  before_call("fread", 1, [this] { store(nvme_drive_file(2, kMainPower, {NvmeDrive{.slot = "A"}})); });
  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive{.slot = "A"}.xml());
  before_call("fread", 1, [this] { store(nvme_drive_file(9, kMainPower, std::vector<NvmeDrive>(9))); });

  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive().xml());
  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeDriveFailures, ANullReplyIsFineWhereNothingIsWritten) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  uint32_t length = kUnwrittenLength;

  EXPECT_EQ(PLUGIN(get_nvme_phy_drive_info)(nullptr, nullptr, 65536, &length, 1), 0);
  EXPECT_EQ(length, 0u);
}

TEST_F(NvmeDriveFailures, ATextBeyondTheBudgetIsSentCut) {
  store(little_endian().u32(1).u8(kMainPower) + Bytes::repeated(kNvmeDriveSize, 'x'));

  const Reply reply = full();

  EXPECT_EQ(reply.length, 1124u);
  EXPECT_EQ(reply.buffer[1123], 0);
  EXPECT_EQ(reply.buffer[1122], 'x');
}

}  // namespace
}  // namespace tests
