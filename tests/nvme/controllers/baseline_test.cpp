// What the controllers' calls remember of each other.

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NvmeControllerBaseline : public NvmeControllerTest {
 protected:
  const NvmeController a_{.name = "A", .stamp = 0};
  const NvmeController b_{.name = "B", .stamp = 0};

  // Controller B as a deleted one, where A was read and not reported.
  static std::string deleted_b() { return controller_summary(1) + plain_controller_xml("B", "Deleted"); }
};

class UneventfulControllerState : public NvmeControllerBaseline, public testing::WithParamInterface<uint8_t> {};

TEST_P(UneventfulControllerState, AnswersNothingWhileItStays) {
  store(GetParam(), {a_});
  full();
  store(GetParam(), {a_, NvmeController{.name = "B", .stamp = 2}}, 2000);

  EXPECT_EQ(event().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(States, UneventfulControllerState, testing::Values(0, 1, 2, 3, 5, 200, 255));

TEST_F(NvmeControllerBaseline, AnEarlierTimeIsAChangeToo) {
  store(kMainPower, {a_});
  full();
  store(kMainPower, {a_}, 999);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerBaseline, TimesHave64Bits) {
  const int64_t same_low_half = 1000 + (int64_t{1} << 32);
  store(kMainPower, {a_});
  full();
  store(kAuxPower, {a_}, same_low_half);
  EXPECT_EQ(text_of(event()), controller_summary(0, "Aux_Power"));
  store(kMainPower, {a_}, 1000);
  event();

  EXPECT_THAT(system_log(),
              ElementsAre("mcserver_nvme.cpp:662:NVME subsystem state changed, prevState(4), newState(3), "
                          "prevModTime(1000, Thu Jan  1 00:16:40 1970\n), "
                          "curModTime(4294968296, Sun Feb  7 06:44:56 2106\n)\n",
                          "mcserver_nvme.cpp:662:NVME subsystem state changed, prevState(3), newState(4), "
                          "prevModTime(4294968296, Sun Feb  7 06:44:56 2106\n), "
                          "curModTime(1000, Thu Jan  1 00:16:40 1970\n)\n"));
}

TEST_F(NvmeControllerBaseline, StatesAreUnsignedAndUnlikeNone) {
  store(255, {NvmeController{.name = "A", .stamp = 7}});
  event();
  store(200, {a_}, 2000);
  event();

  const std::vector<std::string> lines = system_log();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[0], HasSubstr("prevState(-1), newState(255)"));
  EXPECT_THAT(lines[1], HasSubstr("mcserver_nvme.cpp:743:"));
  EXPECT_THAT(lines[2], HasSubstr("prevState(255), newState(200)"));
}

TEST_F(NvmeControllerBaseline, AShortHeaderLeavesTheList) {
  store(kMainPower, {a_, b_});
  full();
  files.write(kNvmeControllerStore, Bytes(), 2000);
  EXPECT_EQ(event().status, -37);
  store(kMainPower, {a_}, 3000);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeControllerBaseline, AFailedImageLeavesTheList) {
  store(kMainPower, {a_, b_});
  full();
  store(kMainPower, {a_}, 2000);
  fail("malloc", 1, ENOMEM);
  EXPECT_EQ(event().status, 35);
  store(kMainPower, {a_}, 3000);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeControllerBaseline, AFailureToLockLeavesEverything) {
  store(kMainPower, {a_, b_});
  full();
  fail("flock", 1, EINTR);
  EXPECT_EQ(event().status, -35);
  EXPECT_EQ(event().length, 0u);  // still known, and so is its time
  store(kMainPower, {a_}, 2000);
  fail("flock", 1, EINTR);
  EXPECT_EQ(event().status, -35);

  EXPECT_EQ(text_of(event()), deleted_b());
}

TEST_F(NvmeControllerBaseline, ACountHas16Bits) {
  std::vector<NvmeController> controllers(300);
  for (size_t i = 0; i < controllers.size(); ++i) controllers[i] = {.name = std::to_string(i), .stamp = 0};
  store(kMainPower, controllers);
  full({.size = 1u << 20});
  store(kMainPower, controllers, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerBaseline, AnEntryBeyondThe256thIsFoundToo) {
  std::vector<NvmeCtlrSummary> entries(300);
  strcpy(entries[299].controller_name, "A");
  const Bytes record = a_.stored();

  EXPECT_EQ(
      PLUGIN(new_nvme_ctlr_or_modified)(reinterpret_cast<const NvmeCtlrInfo *>(record.data()), entries.data(), 300), 0);
}

TEST_F(NvmeControllerBaseline, AReadErrorIsLoggedUnderTheLock) {
  store(kMainPower, {a_});
  fail("fread", 2, EIO);
  std::vector<std::string> logged_before_unlock;
  before_call("flock", 2, [&] { logged_before_unlock = system_log(); });

  full();

  EXPECT_THAT(logged_before_unlock, ElementsAre(HasSubstr("mcserver_nvme.cpp:751:")));
}

}  // namespace
}  // namespace tests
