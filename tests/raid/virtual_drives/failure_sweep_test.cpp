// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include "host/failure_sweep.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::Values;

class Scene : public SweepScene<VirtualDriveTest> {
 public:
  explicit Scene(DisturbedCall disturbed) : disturbed_(disturbed) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_vddebug", "");
    trace_at(3);
    // Lists of one entry, so that they must be enlarged.
    if (!is_first(disturbed)) {
      store({volume(0)});
      full();
    }
    // One is gone, two are new.
    store(after(), 2000);
  }

  bool disturb(const Failure &failure, int nth, Extent extent) {
    const CallOptions options = {.size = 16, .growth = {Growth::kMove}};
    return disturb_during(failure, nth, extent, [&] {
      const Reply reply = is_delta(disturbed_) ? delta(options) : full(options);

      EXPECT_THAT(reply.status, AnyOf(0, -35, -37));
      EXPECT_EQ(reply.length, reply.status == 0 && reply.length != 0 ? length_of(reply.buffer[3]) : 0u);
    });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &) {
    trace();
    EXPECT_EQ(full().bytes(), virtual_drive_reply(after()));
    store({volume(1, 0x03000003)}, 3000);
    EXPECT_EQ(delta().bytes(),
              virtual_drive_header(2) + volume(1, 0x03000003).reported() + gone_virtual_drive(volume(2)));
    EXPECT_EQ(trace(), "");
  }

 private:
  static std::vector<VirtualDrive> after() { return {volume(1, 0x02000002), volume(2)}; }

  const DisturbedCall disturbed_;
};

class VirtualDriveFailureSweep : public RetrievalSweep {};

TEST_P(VirtualDriveFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, disturbed, extent] = GetParam();
  sweep<Scene>(failure, extent, disturbed);
}

INSTANTIATE_TEST_SUITE_P(OfAnyCall, VirtualDriveFailureSweep,
                         Combine(Values(failure("fopen", ENOENT), failure("fopen", EMFILE), failure("fclose", EIO),
                                        failure("fread", EIO), failure("fileno", EBADF), failure("flock", ENOLCK),
                                        failure("stat", EACCES), failure("realloc", ENOMEM), failure("malloc", ENOMEM)),
                                 every_call(), once_and_from_there_on()));

// There are many of these, and a delta prints the most.
INSTANTIATE_TEST_SUITE_P(OfADelta, VirtualDriveFailureSweep,
                         Combine(Values(failure("fprintf", ENOSPC)), Values(DisturbedCall::kDelta),
                                 once_and_from_there_on()));

}  // namespace
}  // namespace tests
