#include "nvme/dump_test.h"

namespace tests {
namespace {

class NvmeDriveDump : public NvmeDumpTest {
 protected:
  std::string drive(const NvmeDrive &record) { return dump<NvmePhyDriveInfo>("print_nvme_pdinfo", record.stored()); }
};

TEST_F(NvmeDriveDump, ADriveEndsWithAnEmptyLine) {
  EXPECT_EQ(
      drive({.temperature = 200, .life_left = 65535, .stamp = 0x80000000}),
      "controller-name: NVME-C1\nsmbios-pcislotname: FRONT-NVME-1\nproduct-name: NVMe SSD 1.6TB\nstatus: Optimal\n"
      "serial-number: SN000123\nfirmware-version: FW1.0\nvendor: VENDOR\nvendor-id: 0x1234\ndevice-id: 0x5678\n"
      "subvendor-id: 0x1234\nsubdevice-id: 0x9abc\ntemperature: 200\nstatus-description: Healthy\n"
      "drive-life-used-percent: 2\nlife-left-in-days: 65535\npercent-power-on-hours: 10\nperformance-percent: 100\n"
      "throttle-threshold: 70\nshutdown-threshold: 80\nmod-timestamp: -2147483648\n\n");
}

TEST_F(NvmeDriveDump, AStatusWithoutANameIsEmpty) {
  EXPECT_NE(drive({.status = 99}).find("\nstatus: \n"), std::string::npos);
}

TEST_F(NvmeDriveDump, ANullStreamIsTraced) {
  const Bytes record = NvmeDrive().stored();
  trace_at(3);

  PLUGIN(print_nvme_pdinfo)(reinterpret_cast<const NvmePhyDriveInfo *>(record.data()), nullptr);

  EXPECT_EQ(trace(), "<print_nvme_pdinfo: 882> [print_nvme_pdinfo]print_nvme_pdinfo: nvme_pdPtr is NULL!\n");
}

TEST_F(NvmeDriveDump, ANullDriveWritesNothing) {
  FILE *stream = tmpfile();

  PLUGIN(print_nvme_pdinfo)(nullptr, stream);

  EXPECT_EQ(ftell(stream), 0);
  fclose(stream);
}

}  // namespace
}  // namespace tests
