// Every libc call of the NVMe retrievals is made to fail once, and then from there on. Whatever fails, the plug-in
// answers with one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <tuple>

#include "host/failure_sweep.h"
#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::Values;

// What is swept of a kind.
struct EntryPoints {
  const char *full;
  const char *event;
  bool has_drives;
};
void PrintTo(const EntryPoints &kind, std::ostream *out) { *out << kind.event; }

// A host of its own for each call that is disturbed: one device stays, one is modified, one is gone, three are new.
class Scene : public SweepScene<PluginTest> {
 public:
  explicit Scene(const EntryPoints &kind) : kind_(kind) {
    trace_at(3);
    store({"A", "B", "C"}, 1, kAuxPower, 1000);
    call(kind_.full);
    store({"A", "B", "D", "E", "F"}, 2, kMainPower, 2000);
  }

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    return disturb_during(failure, nth, extent, [&] {
      const Reply reply = call(kind_.event, {.size = 1, .growth = {Growth::kMove}});

      EXPECT_THAT(reply.status, AnyOf(0, -4, 35, -35, -37));
      EXPECT_TRUE(reply.status == 0 || reply.length == 0);
    });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &) {
    const std::string expected = kind_.has_drives
                                     ? drive_summary(2) + drive("D", 2).xml() + drive("E", 2).xml()
                                     : controller_summary(2) + plain_controller_xml("D") + plain_controller_xml("E");
    store({"D", "E"}, 2, kMainPower, 3000);

    EXPECT_EQ(text_of(call(kind_.full)), expected);
    store({"D", "E"}, 2, kMainPower, 4000);
    const Reply reply = call(kind_.event);
    EXPECT_EQ(text_of(reply), kind_.has_drives ? "" : expected);  // controllers repeat themselves
  }

 private:
  static NvmeDrive drive(const std::string &slot, uint32_t stamp) { return {.slot = slot, .stamp = stamp}; }

  void store(const std::vector<std::string> &names, uint32_t stamp, uint8_t state, int64_t modified) {
    std::vector<NvmeController> controllers;
    std::vector<NvmeDrive> drives;
    for (const std::string &name : names) {
      controllers.push_back({.name = name, .stamp = stamp});
      drives.push_back(drive(name, stamp));
    }
    files.write(kNvmeControllerStore, nvme_controller_file(state, controllers), modified);
    files.write(kNvmeDriveStore, nvme_drive_file(state, drives), modified);
  }

  const EntryPoints kind_;
};

class NvmeFailureSweep : public testing::TestWithParam<std::tuple<Failure, EntryPoints, Extent>> {};

TEST_P(NvmeFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, kind, extent] = GetParam();
  sweep<Scene>(failure, extent, kind);
}

const EntryPoints kControllers = {"mc_get_nvme_controller", "mc_event_nvme_controller", false};
const EntryPoints kDrives = {"mc_get_nvme_phy_drive", "mc_event_nvme_phy_drive", true};

INSTANTIATE_TEST_SUITE_P(OfAnyCall, NvmeFailureSweep,
                         Combine(Values(failure("fopen", ENOENT), failure("fopen", EMFILE), failure("fclose", EIO),
                                        failure("fread", EIO), failure("fileno", EBADF), failure("flock", ENOLCK),
                                        failure("stat", EACCES), failure("realloc", ENOMEM), failure("calloc", ENOMEM),
                                        failure("localtime_r", EOVERFLOW)),
                                 Values(kControllers, kDrives), once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfAnImage, NvmeFailureSweep,
                         Combine(Values(failure("malloc", ENOMEM)), Values(kControllers), once_and_from_there_on()));

}  // namespace
}  // namespace tests
