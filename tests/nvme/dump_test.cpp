#include "host/printed.h"
#include "nvme/nvme_test.h"

namespace tests {
namespace {

class NvmeDumps : public PluginTest {
 protected:
  template <typename Record>
  std::string dump(const std::string &printer, const Bytes &record) {
    const std::vector<uint8_t> exactly(record.data(), record.data() + record.size());
    return printed([&](FILE *stream) {
      forget_calls();
      plugin(static_cast<void (*)(const Record *, FILE *)>(nullptr), printer)(
          reinterpret_cast<const Record *>(exactly.data()), stream);
      EXPECT_EQ(calls().back(), "fflush");
    });
  }
  std::string controller(const NvmeController &record) {
    return dump<NvmeCtlrInfo>("print_nvme_ctlrinfo", record.stored());
  }
  std::string drive(const NvmeDrive &record) { return dump<NvmePhyDriveInfo>("print_nvme_pdinfo", record.stored()); }
};

constexpr char kSwitchLines[] =
    "controller-name: SW\ncontroller-type: NVME-MSWITCH\nmod-timestamp: -2\nstatus: Degraded\ndrive-count: 200\n"
    "vendor-id: VEND\nproduct-id: SWITCH48\ncomponent-id: abcd\nproduct-revision: ab\np2p-vendor-id: 1234\n"
    "p2p-device-id: 5678\nrunning-firmware-version: 1.2.3\npending-firmware-version: 1.2.4\nswitch-temperature: 245\n";

const NvmeController kSwitch{
    .name = "SW", .stamp = 0xFFFFFFFE, .status = 6, .drive_count = 200, .type = "NVME-MSWITCH", .temperature = 245};

TEST_F(NvmeDumps, APlainControllerHasFiveLines) {
  EXPECT_EQ(
      controller({.stamp = 12}),
      "controller-name: NVME-C1\ncontroller-type: NVME-CTLR\nmod-timestamp: 12\nstatus: Optimal\ndrive-count: 4\n");
}

TEST_F(NvmeDumps, AHealthySwitchHasNoDescriptions) {
  EXPECT_EQ(controller(kSwitch), std::string(kSwitchLines) + "switch-status: Optimal\nlink-status: Optimal\n");
}

TEST_F(NvmeDumps, AFaultySwitchHasADescription) {
  NvmeController record = kSwitch;
  record.switch_status = "PCIe error";

  EXPECT_EQ(controller(record),
            std::string(kSwitchLines) +
                "switch-status: Severe_Fault\nswitch-status-desc: PCIe error\nlink-status: Optimal\n");
}

TEST_F(NvmeDumps, OnlyAFaultyLinkEndsTheRecordWithAnEmptyLine) {
  NvmeController record = kSwitch;
  record.link_status = "Link degraded";

  EXPECT_EQ(controller(record),
            std::string(kSwitchLines) +
                "switch-status: Optimal\nlink-status: Moderate_Fault\nlink-status-desc: Link degraded\n\n");
}

TEST_F(NvmeDumps, AStatusWithoutANameIsEmpty) {
  EXPECT_NE(controller({.status = 7}).find("\nstatus: \n"), std::string::npos);
  EXPECT_NE(drive({.status = 99}).find("\nstatus: \n"), std::string::npos);
}

TEST_F(NvmeDumps, ADriveEndsWithAnEmptyLine) {
  EXPECT_EQ(
      drive({.temperature = 200, .life_left = 65535, .stamp = 0x80000000}),
      "controller-name: NVME-C1\nsmbios-pcislotname: FRONT-NVME-1\nproduct-name: NVMe SSD 1.6TB\nstatus: Optimal\n"
      "serial-number: SN000123\nfirmware-version: FW1.0\nvendor: VENDOR\nvendor-id: 0x1234\ndevice-id: 0x5678\n"
      "subvendor-id: 0x1234\nsubdevice-id: 0x9abc\ntemperature: 200\nstatus-description: Healthy\n"
      "drive-life-used-percent: 2\nlife-left-in-days: 65535\npercent-power-on-hours: 10\nperformance-percent: 100\n"
      "throttle-threshold: 70\nshutdown-threshold: 80\nmod-timestamp: -2147483648\n\n");
}

TEST_F(NvmeDumps, ATextRunsOnButStaysInTheRecord) {
  NvmeController record = kSwitch;
  record.link_status = std::string(64, 'L');

  EXPECT_EQ(controller(record), std::string(kSwitchLines) + "switch-status: Optimal\nlink-status: Moderate_Fault\n" +
                                    "link-status-desc: " + std::string(64, 'L') + "\n\n");
}

TEST_F(NvmeDumps, BothFaultsAreDescribed) {
  NvmeController record = kSwitch;
  record.switch_status = "";
  record.link_status = "down";

  EXPECT_EQ(controller(record), std::string(kSwitchLines) +
                                    "switch-status: Severe_Fault\nswitch-status-desc: \n"
                                    "link-status: Moderate_Fault\nlink-status-desc: down\n\n");
}

TEST_F(NvmeDumps, AStatusThatBeginsWithOptimalIsShownAsItIs) {
  NvmeController record = kSwitch;
  record.switch_status = "Optimal, running";

  EXPECT_EQ(controller(record), std::string(kSwitchLines) + "switch-status: Optimal, running\nlink-status: Optimal\n");
}

TEST_F(NvmeDumps, TwelveCharactersMakeASwitch) {
  EXPECT_NE(controller({.type = "NVME-MSWITCH-X"}).find("switch-temperature"), std::string::npos);
  EXPECT_EQ(controller({.type = "NVME-MSWITC"}).find("switch-temperature"), std::string::npos);
}

TEST_F(NvmeDumps, ANullControllerIsTraced) {
  trace_at(3);

  PLUGIN(print_nvme_ctlrinfo)(nullptr, nullptr);

  EXPECT_EQ(trace(), "<print_nvme_ctlrinfo: 841> [print_nvme_ctlrinfo]print_nvme_ctlrinfo: ctlr is NULL!\n");
}

TEST_F(NvmeDumps, ANullStreamIsTracedForADriveOnly) {
  const Bytes a_controller = NvmeController().stored();
  const Bytes a_drive = NvmeDrive().stored();
  trace_at(3);

  PLUGIN(print_nvme_pdinfo)(reinterpret_cast<const NvmePhyDriveInfo *>(a_drive.data()), nullptr);
  EXPECT_EQ(trace(), "<print_nvme_pdinfo: 882> [print_nvme_pdinfo]print_nvme_pdinfo: nvme_pdPtr is NULL!\n");
  PLUGIN(print_nvme_ctlrinfo)(reinterpret_cast<const NvmeCtlrInfo *>(a_controller.data()), nullptr);
  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeDumps, ANullDriveWritesNothing) {
  FILE *stream = tmpfile();

  PLUGIN(print_nvme_pdinfo)(nullptr, stream);

  EXPECT_EQ(ftell(stream), 0);
  fclose(stream);
}

}  // namespace
}  // namespace tests
