// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

#include "host/failure_sweep.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::Values;

// A host of its own for each call that is disturbed.
class Scene : public SweepScene<ControllerTest> {
 public:
  explicit Scene(DisturbedCall disturbed) : disturbed_(disturbed) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_ctlrdebug", "");
    trace_at(3);
    if (!is_first(disturbed)) {
      store(kNotReady, before());
      full();
    }
    store(kReady, after(), 2000);
  }

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    if (failure.function == std::string("fscanf")) files.write_text("/etc/product", "tarnika");
    // The host is asked for room for the file, and for the gone ones once more.
    const CallOptions options = {.size = 18, .growth = {Growth::kInPlace, Growth::kMove}};
    return disturb_during(failure, nth, extent, [&] {
      const Reply reply = is_delta(disturbed_) ? delta(options) : full(options);

      EXPECT_THAT(reply.status, AnyOf(0, -13, -35, -37));
      EXPECT_EQ(reply.length, reply.status == 0 ? controller_reply_size(reply.buffer[4]) : 0u);
    });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &failure) {
    // A null list without an error is no failure: it is exchanged like any other, and the next call copes with it too.
    if (failure.verdict.fails && failure.verdict.error == 0) full();
    files.remove("/var/mctool_ctlrdebug.txt");
    system_log();
    trace();

    EXPECT_EQ(full().bytes(), controller_reply(kReady, after()));
    EXPECT_THAT(system_log(), IsEmpty());
    EXPECT_THAT(trace(), Not(HasSubstr("store_ctrls")));
    const std::string dump = files.read("/var/mctool_ctlrdebug.txt");
    EXPECT_THAT(dump, StartsWith("\n cur_ctlr_list \n[1]  [2]  [4]  [5]  [6]  \n"));
    EXPECT_THAT(dump, EndsWith("\n After swap, cached_ctlr_list \n[1]  [2]  [4]  [5]  [6]  \n"));

    store(kReady, {dumped_in_short(2, 3), numbered(4), numbered(5), numbered(6)}, 3000);
    EXPECT_EQ(delta().bytes(), controller_header(kReady, 2) + dumped_in_short(2, 3).reported() +
                                   gone(numbered(1), numbered(6).stored()));
  }

 private:
  static Controller dumped_in_short(size_t number, uint32_t stamp = 1) {
    Controller controller = numbered(number, stamp);
    controller.is_supported = 0;
    return controller;
  }

  // One stays, one is modified, two are gone, three are new: more than the lists had room for.
  static std::vector<Controller> before() {
    return {dumped_in_short(0), dumped_in_short(1), dumped_in_short(2), dumped_in_short(3)};
  }
  static std::vector<Controller> after() {
    return {dumped_in_short(1), dumped_in_short(2, 2), numbered(4), dumped_in_short(5), dumped_in_short(6)};
  }

  const DisturbedCall disturbed_;
};

class FailureSweep : public RetrievalSweep {};

TEST_P(FailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, disturbed, extent] = GetParam();
  sweep<Scene>(failure, extent, disturbed);
}

INSTANTIATE_TEST_SUITE_P(OfAnyCall, FailureSweep,
                         Combine(Values(failure("fopen", ENOENT), failure("fopen", EMFILE), failure("fclose", EIO),
                                        failure("fread", EIO), Failure{"fread", {.fails = false, .error = ENOMEM}},
                                        failure("fileno", EBADF), failure("flock", ENOLCK), failure("stat", EACCES),
                                        failure("realloc", ENOMEM),
                                        Failure{"realloc", {.fails = false, .error = ENOMEM}},
                                        Failure{"realloc", {.fails = true, .error = 0}}, failure("fprintf", ENOSPC)),
                                 every_call(), once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfAFirstCall, FailureSweep,
                         Combine(Values(failure("fflush", EIO), failure("fscanf", EIO)),
                                 Values(DisturbedCall::kFirstFull, DisturbedCall::kFirstDelta),
                                 once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfADelta, FailureSweep,
                         Combine(Values(failure("localtime_r", EOVERFLOW)),
                                 Values(DisturbedCall::kFirstDelta, DisturbedCall::kDelta), once_and_from_there_on()));

INSTANTIATE_TEST_SUITE_P(OfADeltaWithGoneControllers, FailureSweep,
                         Combine(Values(failure("malloc", ENOMEM)), Values(DisturbedCall::kDelta),
                                 once_and_from_there_on()));

}  // namespace
}  // namespace tests
