// Every libc call of the NVMe retrievals is made to fail once, and then from there on. Whatever fails, the plug-in
// answers with one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <tuple>

#include "mcserver_nvme/nvme_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::Values;

struct Failure {
  const char *function;
  int error;
};
void PrintTo(const Failure &failure, std::ostream *out) { *out << failure.function << " with errno " << failure.error; }

struct Kind {
  const char *full;
  const char *event;
  bool has_drives;
};
void PrintTo(const Kind &kind, std::ostream *out) { *out << kind.event; }

enum class Extent { kOnce, kFromThereOn };
void PrintTo(Extent extent, std::ostream *out) { *out << (extent == Extent::kOnce ? "once" : "from there on"); }

// More than any of the disturbed calls makes of one function.
constexpr int kMostCalls = 60;

// A host of its own for each call that is disturbed: one device stays, one is modified, one is gone, three are new.
class Scene : public PluginTest {
 public:
  explicit Scene(const Kind &kind) : kind_(kind) {
    trace_at(3);
    store({"A", "B", "C"}, 1, kAuxPower, 1000);
    call(kind_.full);
    store({"A", "B", "D", "E", "F"}, 2, kMainPower, 2000);
    forget_calls();
  }

  void TestBody() override {}

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    const int last = extent == Extent::kOnce ? nth : nth + kMostCalls;
    for (int number = nth; number <= last; ++number)
      before_call(failure.function, number, [this, failure] {
        if (is_disturbed_) fail(failure.function, 1, failure.error);
      });

    is_disturbed_ = true;
    const Reply reply = call(kind_.event, {.size = 1, .growth = {Growth::kMove}});
    is_disturbed_ = false;

    EXPECT_THAT(reply.status, AnyOf(0, -4, 35, -35, -37));
    EXPECT_TRUE(reply.status == 0 || reply.length == 0);
    const auto number = std::count_if(calls().begin(), calls().end(), [&](const std::string &one) {
      return one.substr(0, one.find(' ')) == failure.function;
    });
    EXPECT_LT(number, kMostCalls);
    return number >= nth;
  }

  void expect_it_to_be_as_good_as_ever() {
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

  const Kind kind_;
  bool is_disturbed_ = false;
};

class NvmeFailureSweep : public testing::TestWithParam<std::tuple<Failure, Kind, Extent>> {};

TEST_P(NvmeFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, kind, extent] = GetParam();
  int nth = 0;
  bool was_disturbed = true;

  while (was_disturbed && !HasFailure()) {
    SCOPED_TRACE("call " + std::to_string(++nth));
    Scene scene(kind);
    was_disturbed = scene.disturb(failure, nth, extent);
    scene.expect_it_to_be_as_good_as_ever();
  }

  EXPECT_GT(nth, 1) << "there was no such call";
}

const auto kExtents = Values(Extent::kOnce, Extent::kFromThereOn);
const Kind kControllers = {"mc_get_nvme_controller", "mc_event_nvme_controller", false};
const Kind kDrives = {"mc_get_nvme_phy_drive", "mc_event_nvme_phy_drive", true};

INSTANTIATE_TEST_SUITE_P(OfAnyCall, NvmeFailureSweep,
                         Combine(Values(Failure{"fopen", ENOENT}, Failure{"fopen", EMFILE}, Failure{"fclose", EIO},
                                        Failure{"fread", EIO}, Failure{"fileno", EBADF}, Failure{"flock", ENOLCK},
                                        Failure{"stat", EACCES}, Failure{"realloc", ENOMEM}, Failure{"calloc", ENOMEM},
                                        Failure{"ctime", EOVERFLOW}),
                                 Values(kControllers, kDrives), kExtents));

INSTANTIATE_TEST_SUITE_P(OfAnImage, NvmeFailureSweep,
                         Combine(Values(Failure{"malloc", ENOMEM}), Values(kControllers), kExtents));

}  // namespace
}  // namespace tests
