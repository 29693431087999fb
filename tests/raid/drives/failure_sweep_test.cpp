// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include "host/failure_sweep.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::Values;

class Scene : public SweepScene<DriveTest> {
 public:
  explicit Scene(DisturbedCall disturbed) : disturbed_(disturbed) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_pddebug", "");
    trace_at(3);
    // Lists of one entry, so that they must be enlarged.
    if (!is_first(disturbed)) {
      store(256, {numbered_drive(0), numbered_drive(1), numbered_drive(2)});
      full({.growth = {Growth::kMove}});
    }
    // One stays, one is modified, one is gone, two are new.
    store(256, after(), 2000);
  }

  bool disturb(const Failure &failure, int nth, Extent extent) {
    const CallOptions options = {.size = 18, .growth = {Growth::kMove}};
    return disturb_during(failure, nth, extent, [&] {
      const Reply reply = is_delta(disturbed_) ? delta(options) : full(options);

      EXPECT_THAT(reply.status, AnyOf(0, -35, -37));
      EXPECT_EQ(reply.length, reply.status == 0 && reply.length != 0 ? drive_reply_size(reply.buffer[6]) : 0u);
    });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &) {
    trace();
    EXPECT_EQ(full({.size = drive_room(4, 256)}).bytes(), drive_header(256, 4) + bytes_of(after()));
    store(256, {numbered_drive(1), numbered_drive(2, 3)}, 3000);
    EXPECT_EQ(delta({.size = drive_room(4, 256)}).bytes(), drive_header(256, 3) + numbered_drive(2, 3).reported() +
                                                               gone_drive(numbered_drive(3), untouched_drive_slot()) +
                                                               gone_drive(numbered_drive(4), untouched_drive_slot()));
    EXPECT_EQ(trace(), "");
  }

 private:
  static std::vector<Drive> after() {
    return {numbered_drive(1), numbered_drive(2, 2), numbered_drive(3), numbered_drive(4)};
  }
  static Bytes bytes_of(const std::vector<Drive> &drives) {
    Bytes bytes;
    for (const Drive &drive : drives) bytes += drive.reported();
    return bytes;
  }

  const DisturbedCall disturbed_;
};

class DriveFailureSweep : public RetrievalSweep {};

TEST_P(DriveFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, disturbed, extent] = GetParam();
  sweep<Scene>(failure, extent, disturbed);
}

INSTANTIATE_TEST_SUITE_P(OfAnyCall, DriveFailureSweep,
                         Combine(Values(failure("fopen", ENOENT), failure("fopen", EMFILE), failure("fclose", EIO),
                                        failure("fread", EIO), failure("fileno", EBADF), failure("flock", ENOLCK),
                                        failure("stat", EACCES), failure("realloc", ENOMEM),
                                        failure("fprintf", ENOSPC)),
                                 every_call(), once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfAFirstCall, DriveFailureSweep,
                         Combine(Values(failure("calloc", ENOMEM)),
                                 Values(DisturbedCall::kFirstFull, DisturbedCall::kFirstDelta),
                                 once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfADelta, DriveFailureSweep,
                         Combine(Values(failure("malloc", ENOMEM)), Values(DisturbedCall::kDelta),
                                 once_and_from_there_on()));

}  // namespace
}  // namespace tests
