#include <gmock/gmock.h>

#include <filesystem>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NvmeControllerFailures : public NvmeControllerTest {
 protected:
  NvmeControllerFailures() { trace_at(3); }

  const std::string whole_ = controller_summary(1) + plain_controller_xml("NVME-C1");
};

TEST_F(NvmeControllerFailures, AMissingFileIsNoData) {
  EXPECT_EQ(full().status, -37);
  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeControllerFailures, TheLocksTracesHaveNoNewline) {
  store(kMainPower, {NvmeController()});
  const std::string prefix = "> [getlock_and_open_file]";

  fail("fopen", 1, EACCES);
  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(), "<getlock_and_open_file: 211" + prefix + "/var/nvmectlr_info Open failed: Permission denied");
  fail("fileno", 1, EBADF);
  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 216" + prefix + "Failed to get fd for /var/nvmectlr_info: Bad file descriptor");
  fail("flock", 1, ENOLCK);
  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 221" + prefix + "Failed to lock File /var/nvmectlr_info: No locks available");
  files.write(kNvmeDriveStore, Bytes());
  fail("fopen", 2, EMFILE);
  EXPECT_EQ(call("mc_get_nvme_phy_drive").status, -35);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 248" + prefix + "/var/nvmephydrive_info Open failed: Too many open files");
}

TEST_F(NvmeControllerFailures, AFailedUnlockIsTracedAndChangesNothing) {
  store(kMainPower, {NvmeController()});
  fail("flock", 2, EINTR);

  EXPECT_EQ(text_of(full()), whole_);
  EXPECT_EQ(trace(),
            "<unlock_and_close_file: 187> [unlock_and_close_file]Failed to UnLock File /var/nvmectlr_info: "
            "Interrupted system call");
}

TEST_F(NvmeControllerFailures, AFailedImageIsLoggedAndPositive) {
  store(kMainPower, {NvmeController()});
  fail("malloc", 1, ENOMEM);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(system_log(), ElementsAre("mcserver_nvme.cpp:639:Memory allocation failed"));
  EXPECT_EQ(trace(), "");
  EXPECT_EQ(event().length, 0u);  // the time has moved
}

TEST_F(NvmeControllerFailures, AnEmptyFileIsNoData) {
  files.write(kNvmeControllerStore, Bytes());

  EXPECT_EQ(full().status, -37);
}

TEST_F(NvmeControllerFailures, AReadErrorIsLoggedAndKeepsWhatWasRead) {
  store(kMainPower, {NvmeController(), NvmeController{.name = "B"}});
  fail("fread", 3, EIO);

  EXPECT_EQ(text_of(full()), whole_);
  EXPECT_THAT(system_log(),
              ElementsAre("mcserver_nvme.cpp:751:Error reading file /var/nvmectlr_info, Input/output error\n"));
  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeControllerFailures, AFailedCurListIsTraced) {
  store(kMainPower, {NvmeController()});
  fail("realloc", 1, ENOMEM);

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<get_nvme_controller_info: 687> [get_nvme_controller_info]cur_ctlr_list memory allocation failed\n");
  EXPECT_EQ(text_of(full()), whole_);
}

TEST_F(NvmeControllerFailures, AFailedCachedListIsTraced) {
  store(kMainPower, {NvmeController()});
  fail("realloc", 2, ENOMEM);

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(trace(),
            "<get_nvme_controller_info: 698> [get_nvme_controller_info]cached_ctlr_list memory allocation failed\n");
  EXPECT_EQ(text_of(full()), whole_);
}

TEST_F(NvmeControllerFailures, ENOMEMIsTheFailureEvenWithABlock) {
  store(kMainPower, {NvmeController()});
  inject("realloc", 1, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().status, -35);
  EXPECT_EQ(text_of(full()), whole_);
}

TEST_F(NvmeControllerFailures, ANullListWithoutENOMEMStopsTheReading) {
  store(kMainPower, {NvmeController()});
  inject("realloc", 2, {.fails = true, .error = 0});

  EXPECT_EQ(text_of(full()), controller_summary(0));
  EXPECT_THAT(trace(), testing::MatchesRegex("<get_nvme_controller_info: 722> \\[get_nvme_controller_info\\]"
                                             "cur_ctlr_list= 0x[0-9a-f]+, cached_ctlr_list= \\(nil\\)\n"));
  EXPECT_THAT(system_log(), ElementsAre(HasSubstr("mcserver_nvme.cpp:751:Error reading file /var/nvmectlr_info, ")));
  EXPECT_EQ(text_of(full()), whole_);
}

TEST_F(NvmeControllerFailures, AFailedTextHasNoBuffer) {
  store(kMainPower, {NvmeController()});
  fail("calloc", 1, ENOMEM);

  EXPECT_EQ(full().status, -4);
  EXPECT_EQ(trace(),
            "<get_nvme_controller_info: 776> [get_nvme_controller_info]get_nvme_controller_info: xmlBuf calloc(1124) "
            "failed: Cannot allocate memory!\n");
}

TEST_F(NvmeControllerFailures, AFileThatGrowsIsReadToTheSizeItHad) {
  store(kMainPower, {NvmeController()});
  before_call("fread", 1, [this] { store(kMainPower, std::vector<NvmeController>(50)); });

  EXPECT_EQ(text_of(full()), whole_);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllerFailures, ANullLengthIsRefused) {
  const auto get = PLUGIN(get_nvme_controller_info);

  EXPECT_EQ(get(nullptr, nullptr, 0, nullptr, 0), -35);
}

TEST_F(NvmeControllerFailures, ANullReplyOfSomeSizeIsRefused) {
  store(kMainPower, {NvmeController()});
  uint32_t length = kUnwrittenLength;
  const auto get = PLUGIN(get_nvme_controller_info);

  EXPECT_EQ(get(nullptr, nullptr, 65536, &length, 0), -35);
  EXPECT_EQ(length, 0u);
}

TEST_F(NvmeControllerFailures, EveryFailureOfTheLockClearsTheLength) {
  EXPECT_EQ(full().length, 0u);
  store(kMainPower, {NvmeController()});
  for (const char *function : {"fopen", "fileno", "flock", "stat"}) {
    fail(function, 1, EIO);
    const Reply reply = full();

    EXPECT_EQ(reply.status, std::string(function) == "stat" ? -37 : -35);
    EXPECT_EQ(reply.length, 0u);
  }
}

TEST_F(NvmeControllerFailures, AnImageBeyond32BitsIsNone) {
  store(kMainPower, {NvmeController()});
  std::filesystem::resize_file(files.real(kNvmeControllerStore), (uint64_t{1} << 32) + kNvmeControllerSize);

  EXPECT_EQ(full().status, 35);
  EXPECT_THAT(system_log(), ElementsAre("mcserver_nvme.cpp:639:Memory allocation failed"));
}

TEST_F(NvmeControllerFailures, AFailedImageAndAFailedHeaderLeaveTheState) {
  store(kMainPower, {});
  fail("malloc", 1, ENOMEM);
  EXPECT_EQ(event().status, 35);
  files.write(kNvmeControllerStore, Bytes(), 2000);
  EXPECT_EQ(event().status, -37);
  system_log();
  store(kMainPower, {}, 3000);

  event();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr("prevState(-1), newState(4), prevModTime(2000, ")));
}

TEST_F(NvmeControllerFailures, AFailedListHasStoredTheState) {
  store(kMainPower, {NvmeController()});
  fail("realloc", 1, ENOMEM);
  EXPECT_EQ(full().status, -35);
  system_log();
  store(kMainPower, {NvmeController()}, 2000);

  event();

  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllerFailures, ALostCachedListMatchesNothing) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}, NvmeController{.name = "B", .stamp = 0}});
  full();
  std::vector<NvmeController> more(5, NvmeController{.name = "A", .stamp = 0});
  store(kMainPower, more, 2000);
  fail("realloc", 2, ENOMEM);
  EXPECT_EQ(event().status, -35);
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}, NvmeController{.name = "", .stamp = 0}}, 3000);

  EXPECT_EQ(text_of(event()), controller_summary(2) + plain_controller_xml("A") + plain_controller_xml(""));
}

TEST_F(NvmeControllerFailures, ASurvivingCachedListKeepsItsLength) {
  store(kMainPower, {NvmeController{.name = "A"}, NvmeController{.name = "B"}, NvmeController{.name = "C"}});
  full();
  store(kMainPower, std::vector<NvmeController>(9), 2000);
  fail("realloc", 1, ENOMEM);
  EXPECT_EQ(full().status, -35);
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}}, 3000);

  EXPECT_EQ(text_of(event()),
            controller_summary(2) + plain_controller_xml("B", "Deleted") + plain_controller_xml("C", "Deleted", "", 0));
}

TEST_F(NvmeControllerFailures, ANullCurListStopsTheReadingToo) {
  store(kMainPower, {NvmeController()});
  inject("realloc", 1, {.fails = true, .error = 0});

  EXPECT_EQ(text_of(full()), controller_summary(0));
  EXPECT_THAT(trace(), HasSubstr("cur_ctlr_list= (nil), cached_ctlr_list= 0x"));
}

TEST_F(NvmeControllerFailures, TheSizeOfTheListsIsThatOfTheFileInRecords) {
  files.write(kNvmeControllerStore, Bytes().fill(kNvmeControllerSize - 1, 0));
  full();
  EXPECT_EQ(std::count(calls().begin(), calls().end(), "realloc"), 0);
  files.write(kNvmeControllerStore, Bytes().fill(kNvmeControllerSize, 0));
  full();

  EXPECT_EQ(std::count(calls().begin(), calls().end(), "realloc"), 2);
}

TEST_F(NvmeControllerFailures, AHeaderThatCannotBeReadIsNoData) {
  store(kMainPower, {NvmeController()});
  fail("fread", 1, EIO);

  EXPECT_EQ(full().status, -37);
}

TEST_F(NvmeControllerFailures, ARefusedReplyHasConsumedTheNews) {
  store(kMainPower, {});
  full();
  store(kMainPower, {NvmeController{.stamp = 0}}, 2000);
  EXPECT_EQ(event({.size = 1, .growth = {Growth::kRefuse}}).status, -4);
  store(kMainPower, {NvmeController{.stamp = 0}}, 3000);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerFailures, AFileThatShrinksJustEnds) {
  store(kMainPower, {NvmeController{.name = "A"}, NvmeController{.name = "B"}});
  before_call("fread", 1, [this] { store(kMainPower, {NvmeController{.name = "A"}}); });

  EXPECT_EQ(text_of(full()), controller_summary(1) + plain_controller_xml("A"));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllerFailures, AFreshlyLoadedPluginRemembersNothing) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}});
  full();
  unload();
  load();
  store(kMainPower, {NvmeController{.name = "B", .stamp = 0}}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("B"));
}

}  // namespace
}  // namespace tests
