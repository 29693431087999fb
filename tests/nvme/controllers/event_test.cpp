#include <gmock/gmock.h>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NvmeControllerEvents : public NvmeControllerTest {};

std::vector<NvmeController> numbered_controllers(size_t count) {
  std::vector<NvmeController> controllers(count);
  for (size_t i = 0; i < count; ++i) controllers[i] = {.name = std::to_string(i), .stamp = 0};
  return controllers;
}

TEST_F(NvmeControllerEvents, TheFirstReportsEveryController) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 7}, NvmeController{.name = "B", .stamp = 0xFFFFFFFF}});

  EXPECT_EQ(text_of(event()), controller_summary(2) + plain_controller_xml("A") + plain_controller_xml("B"));
  EXPECT_THAT(system_log(),
              ElementsAre("mcserver_nvme.cpp:662:NVME subsystem state changed, prevState(-1), newState(4), "
                          "prevModTime(-1, Wed Dec 31 23:59:59 1969\n), curModTime(1000, Thu Jan  1 00:16:40 1970\n)\n",
                          "mcserver_nvme.cpp:743:NVME subsystem state changed, controller_name=A, modTimestamp=7\n",
                          "mcserver_nvme.cpp:743:NVME subsystem state changed, controller_name=B, modTimestamp=-1\n"));
}

TEST_F(NvmeControllerEvents, AnUnchangedFileAnswersNothing) {
  store(kMainPower, {NvmeController()});
  full();
  store(kMainPower, {});

  const Reply reply = event();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
}

TEST_F(NvmeControllerEvents, EveryControllerWithATimeStampIsReportedAgain) {
  const std::vector<NvmeController> controllers = {{.name = "A", .stamp = 5}, {.name = "B", .stamp = 0}};
  store(kMainPower, controllers);
  full();
  for (const int64_t time : {2000, 3000}) {
    store(kMainPower, controllers, time);

    EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("A"));
  }
}

TEST_F(NvmeControllerEvents, WithoutNewsTheSummaryStandsAlone) {
  store(kMainPower, {NvmeController{.stamp = 0}});
  full();
  store(kMainPower, {NvmeController{.stamp = 0}}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerEvents, TheStampStaysZeroWhenListsGrow) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}});
  full();
  const std::vector<NvmeController> controllers = numbered_controllers(100);
  store(kMainPower, controllers, 2000);
  event();
  store(kMainPower, controllers, 3000);
  EXPECT_EQ(text_of(event()), controller_summary(0));
  store(kMainPower, controllers, 4000);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerEvents, ADeletedControllerIsReportedOnce) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}, NvmeController{.name = "B", .stamp = 0}});
  full();
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}}, 2000);

  // In the slot of the record that was read and not reported.
  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("B", "Deleted"));
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}}, 3000);
  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerEvents, ADeletedControllerInAFreshSlotIsOtherwiseEmpty) {
  store(kMainPower, {NvmeController()});
  full();
  store(kMainPower, {}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("NVME-C1", "Deleted", "", 0));
}

TEST_F(NvmeControllerEvents, AnUnchangedStateOtherThanMainPowerAnswersNothingButMovesTheTime) {
  store(kAuxPower, {NvmeController()});
  full();
  store(kAuxPower, {}, 2000);
  const Reply reply = event();
  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  store(kMainPower, {}, 2000);

  EXPECT_EQ(event().length, 0u);  // the time is the same
  store(kMainPower, {}, 3000);
  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("NVME-C1", "Deleted", "", 0));
}

TEST_F(NvmeControllerEvents, AFullCallRemembersTheState) {
  store(kMainPower, {NvmeController()});
  full();
  store(kAuxPower, {NvmeController()}, 2000);
  full();
  system_log();
  store(kAuxPower, {NvmeController()}, 3000);

  EXPECT_EQ(event().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllerEvents, AStateChangeLogsOnlyTheReported) {
  store(kMainPower, {NvmeController{.name = "A", .stamp = 0}});
  full();
  store(1, {NvmeController{.name = "A", .stamp = 0}, NvmeController{.name = "B", .stamp = 3}}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(1, "Uninitialized") + plain_controller_xml("B"));
  EXPECT_THAT(
      system_log(),
      ElementsAre("mcserver_nvme.cpp:662:NVME subsystem state changed, prevState(4), newState(1), "
                  "prevModTime(1000, Thu Jan  1 00:16:40 1970\n), curModTime(2000, Thu Jan  1 00:33:20 1970\n)\n",
                  "mcserver_nvme.cpp:743:NVME subsystem state changed, controller_name=B, modTimestamp=3\n"));
}

TEST_F(NvmeControllerEvents, ANameThatFillsItsFieldIsComparedWithinIt) {
  const std::string name(24, 'N');
  store(kMainPower, {NvmeController{.name = name, .stamp = 0}});
  full();
  store(kMainPower, {NvmeController{.name = name, .stamp = 0, .status = 2}}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(0));
}

TEST_F(NvmeControllerEvents, ALoggedNameRunsOnButStaysInTheRecord) {
  store(kMainPower,
        {NvmeController{.name = std::string(24, 'N'), .stamp = 0x41414141, .status = 'B', .drive_count = 0}});

  event();

  EXPECT_EQ(system_log().at(1), "mcserver_nvme.cpp:743:NVME subsystem state changed, controller_name=" +
                                    std::string(24, 'N') + "AAAAB, modTimestamp=1094795585\n");
}

TEST_F(NvmeControllerEvents, TheDeletionPassComesAfterTheUnlock) {
  store(kMainPower, {NvmeController()});
  full();
  store(kMainPower, {}, 2000);
  bool was_unlocked = false;
  before_call("strncpy_s", 1, [&] { was_unlocked = files.is_unlocked(kNvmeControllerStore); });

  event();

  EXPECT_TRUE(was_unlocked);
}

TEST_F(NvmeControllerEvents, AFullCallReportsNothingAsDeleted) {
  store(kMainPower, {NvmeController{.name = "A"}, NvmeController{.name = "B"}});
  full();
  store(kMainPower, {NvmeController{.name = "A"}}, 2000);

  EXPECT_EQ(text_of(full()), controller_summary(1) + plain_controller_xml("A"));
}

TEST_F(NvmeControllerEvents, AStateChangeWithoutNewsIsTheSummaryAlone) {
  store(kMainPower, {NvmeController{.stamp = 0}});
  full();
  store(kAuxPower, {NvmeController{.stamp = 0}}, 2000);

  EXPECT_EQ(text_of(event()), controller_summary(0, "Aux_Power"));
}

TEST_F(NvmeControllerEvents, AnyFlagButZeroIsAnEvent) {
  store(kMainPower, {NvmeController()});
  full();
  HostReplyBuffer buffer(65536, {Growth::kInPlace});
  uint32_t length = kUnwrittenLength;

  EXPECT_EQ(PLUGIN(get_nvme_controller_info)(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(),
                                             &length, 2),
            0);
  EXPECT_EQ(length, 0u);
}

TEST_F(NvmeControllerEvents, TheCountWrapsInTheDeletionPassToo) {
  const std::vector<NvmeController> controllers = numbered_controllers(257);
  store(kMainPower, controllers);
  full();
  store(kMainPower, {}, 2000);

  // The 257th lies in slot 0 again, over the first.
  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("256", "Deleted", "", 0));
}

TEST_F(NvmeControllerEvents, APartialRecordShowsUnderADeletedController) {
  store(kMainPower, {NvmeController{.name = "A"}});
  full();
  const NvmeController partial{.name = "PARTIAL", .type = "LEFT-OVER"};
  files.write(kNvmeControllerStore, Bytes().u8(kMainPower) + partial.stored().slice(0, kNvmeControllerSize - 1), 2000);

  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml("A", "Deleted", "LEFT-OVER"));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeControllerEvents, AFullNameIsKeptOfADeletedController) {
  const std::string name(24, 'N');
  store(kMainPower, {NvmeController{.name = name, .stamp = 0}});
  full();
  store(kMainPower, {}, 2000);

  // Without a terminator the name runs on: over the time stamp, which is 0 here.
  EXPECT_EQ(text_of(event()), controller_summary(1) + plain_controller_xml(name, "Deleted", "", 0));
}

TEST_F(NvmeControllerEvents, ATimeWithoutATextIsLoggedWithoutOne) {
  store(kMainPower, {});
  fail("localtime_r", 1, EOVERFLOW);

  event();

  EXPECT_THAT(system_log(),
              ElementsAre("mcserver_nvme.cpp:662:NVME subsystem state changed, prevState(-1), newState(4), "
                          "prevModTime(-1, ), curModTime(1000, Thu Jan  1 00:16:40 1970\n)\n"));
}

TEST_F(NvmeControllerEvents, TheSimulationOfTheOtherFamilyDoesNotConcernThem) {
  files.write_text("/debug/mctool_storage_debug", "");
  store(kMainPower, {NvmeController()});

  EXPECT_EQ(text_of(full()), controller_summary(1) + plain_controller_xml("NVME-C1"));
}

TEST_F(NvmeControllerEvents, TheFirstEntryThatMatchesDecides) {
  const Bytes record = NvmeController{.name = "A", .stamp = 5}.stored();
  NvmeCtlrSummary entries[2] = {{"A", 4}, {"A", 5}};
  const auto *controller = reinterpret_cast<const NvmeCtlrInfo *>(record.data());
  const auto test = PLUGIN(new_nvme_ctlr_or_modified);

  EXPECT_EQ(test(controller, entries, 2), 1);
  EXPECT_EQ(test(controller, entries + 1, 1), 0);
  EXPECT_EQ(test(controller, entries, 0), 1);
  EXPECT_EQ(test(nullptr, entries, 2), 0);
  EXPECT_EQ(test(controller, nullptr, 2), 0);
}

TEST_F(NvmeControllerEvents, DeletedControllersNeedAllThreeLists) {
  const Bytes image = nvme_controller_image(4, {});
  std::vector<uint8_t> bytes(image.data(), image.data() + image.size());
  const NvmeCtlrSummary entry = {};
  const auto add = PLUGIN(add_deleted_nvme_ctlrs);

  add(nullptr, 0, &entry, 1, &entry);
  add(bytes.data(), 0, nullptr, 1, &entry);
  add(bytes.data(), 0, &entry, 1, nullptr);

  EXPECT_EQ(Bytes(bytes), image);
}

}  // namespace
}  // namespace tests
