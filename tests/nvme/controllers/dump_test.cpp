#include "nvme/dump_test.h"

namespace tests {
namespace {

class NvmeControllerDump : public NvmeDumpTest {
 protected:
  std::string controller(const NvmeController &record) {
    return dump<NvmeCtlrInfo>("print_nvme_ctlrinfo", record.stored());
  }
};

constexpr char kSwitchLines[] =
    "controller-name: SW\ncontroller-type: NVME-MSWITCH\nmod-timestamp: -2\nstatus: Degraded\ndrive-count: 200\n"
    "vendor-id: VEND\nproduct-id: SWITCH48\ncomponent-id: abcd\nproduct-revision: ab\np2p-vendor-id: 1234\n"
    "p2p-device-id: 5678\nrunning-firmware-version: 1.2.3\npending-firmware-version: 1.2.4\nswitch-temperature: 245\n";

const NvmeController kDumpedSwitch{
    .name = "SW", .stamp = 0xFFFFFFFE, .status = 6, .drive_count = 200, .type = "NVME-MSWITCH", .temperature = 245};

TEST_F(NvmeControllerDump, APlainControllerHasFiveLines) {
  EXPECT_EQ(
      controller({.stamp = 12}),
      "controller-name: NVME-C1\ncontroller-type: NVME-CTLR\nmod-timestamp: 12\nstatus: Optimal\ndrive-count: 4\n");
}

TEST_F(NvmeControllerDump, AHealthySwitchHasNoDescriptions) {
  EXPECT_EQ(controller(kDumpedSwitch), std::string(kSwitchLines) + "switch-status: Optimal\nlink-status: Optimal\n");
}

TEST_F(NvmeControllerDump, AFaultySwitchHasADescription) {
  NvmeController record = kDumpedSwitch;
  record.switch_status = "PCIe error";

  EXPECT_EQ(controller(record),
            std::string(kSwitchLines) +
                "switch-status: Severe_Fault\nswitch-status-desc: PCIe error\nlink-status: Optimal\n");
}

TEST_F(NvmeControllerDump, OnlyAFaultyLinkEndsTheRecordWithAnEmptyLine) {
  NvmeController record = kDumpedSwitch;
  record.link_status = "Link degraded";

  EXPECT_EQ(controller(record),
            std::string(kSwitchLines) +
                "switch-status: Optimal\nlink-status: Moderate_Fault\nlink-status-desc: Link degraded\n\n");
}

TEST_F(NvmeControllerDump, BothFaultsAreDescribed) {
  NvmeController record = kDumpedSwitch;
  record.switch_status = "";
  record.link_status = "down";

  EXPECT_EQ(controller(record), std::string(kSwitchLines) +
                                    "switch-status: Severe_Fault\nswitch-status-desc: \n"
                                    "link-status: Moderate_Fault\nlink-status-desc: down\n\n");
}

TEST_F(NvmeControllerDump, AStatusThatBeginsWithOptimalIsShownAsItIs) {
  NvmeController record = kDumpedSwitch;
  record.switch_status = "Optimal, running";

  EXPECT_EQ(controller(record), std::string(kSwitchLines) + "switch-status: Optimal, running\nlink-status: Optimal\n");
}

TEST_F(NvmeControllerDump, ATextRunsOnButStaysInTheRecord) {
  NvmeController record = kDumpedSwitch;
  record.link_status = std::string(64, 'L');

  EXPECT_EQ(controller(record), std::string(kSwitchLines) + "switch-status: Optimal\nlink-status: Moderate_Fault\n" +
                                    "link-status-desc: " + std::string(64, 'L') + "\n\n");
}

TEST_F(NvmeControllerDump, TwelveCharactersMakeASwitch) {
  EXPECT_NE(controller({.type = "NVME-MSWITCH-X"}).find("switch-temperature"), std::string::npos);
  EXPECT_EQ(controller({.type = "NVME-MSWITC"}).find("switch-temperature"), std::string::npos);
}

TEST_F(NvmeControllerDump, AStatusWithoutANameIsEmpty) {
  EXPECT_NE(controller({.status = 7}).find("\nstatus: \n"), std::string::npos);
}

TEST_F(NvmeControllerDump, ANullControllerIsTraced) {
  trace_at(3);

  PLUGIN(print_nvme_ctlrinfo)(nullptr, nullptr);

  EXPECT_EQ(trace(), "<print_nvme_ctlrinfo: 841> [print_nvme_ctlrinfo]print_nvme_ctlrinfo: ctlr is NULL!\n");
}

TEST_F(NvmeControllerDump, ANullStreamIsNotTraced) {
  const Bytes record = NvmeController().stored();
  trace_at(3);

  PLUGIN(print_nvme_ctlrinfo)(reinterpret_cast<const NvmeCtlrInfo *>(record.data()), nullptr);

  EXPECT_EQ(trace(), "");
}

}  // namespace
}  // namespace tests
