// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

#include "host/failure_sweep.h"
#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::IsEmpty;
using testing::Values;

// A host of its own for each call that is disturbed.
class Scene : public SweepScene<BbuTest> {
 public:
  explicit Scene(DisturbedCall disturbed) : disturbed_(disturbed) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_bbudebug", "");
    files.write(kFlashModuleImage, flash_module_image());
    trace_at(3);
    if (!is_first(disturbed)) remember(before());
    store(after(), 2000);
  }

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    const CallOptions options = {.size = 17, .growth = {Growth::kMove}};
    return disturb_during(failure, nth, extent, [&] {
      const Reply reply = is_delta(disturbed_) ? delta(options) : full(options);

      EXPECT_THAT(reply.status, AnyOf(0, -13, -35, -37));
      EXPECT_EQ(reply.length, reply.status == 0 ? bbu_reply_size(reply.buffer[3]) : 0u);
    });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &failure) {
    // A null list without an error is no failure: it is exchanged like any other, and the next call copes with it too.
    if (failure.verdict.fails && failure.verdict.error == 0) full();
    files.remove("/var/mctool_bbudebug.txt");
    system_log();
    trace();

    Bytes expected = bbu_header(3);
    for (const Bbu &bbu : after()) expected += with_flash_module(bbu.reported());
    EXPECT_EQ(full().bytes(), expected);
    EXPECT_THAT(system_log(), IsEmpty());
    EXPECT_EQ(trace(), "");
    EXPECT_EQ(files.read("/var/mctool_bbudebug.txt"),
              "\n cur_bbu_list \n[1]  [2]  [3]  \n\n After swap, cached_BBU_list \n[1]  [2]  [3]  \n");

    store({bbu_of(1, 3), bbu_of(3)}, 3000);
    EXPECT_EQ(delta().bytes(), bbu_header(1) + with_flash_module(bbu_of(1, 3).reported()));
  }

 private:
  // One is gone, one is modified, two are new: more than the lists had room for.
  static std::vector<Bbu> before() { return {bbu_of(0), bbu_of(1)}; }
  static std::vector<Bbu> after() { return {bbu_of(1, 2), bbu_of(2), bbu_of(3)}; }

  const DisturbedCall disturbed_;
};

class BbuFailureSweep : public RetrievalSweep {};

TEST_P(BbuFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, disturbed, extent] = GetParam();
  sweep<Scene>(failure, extent, disturbed);
}

INSTANTIATE_TEST_SUITE_P(OfAnyCall, BbuFailureSweep,
                         Combine(Values(failure("fopen", ENOENT), failure("fopen", EMFILE), failure("fclose", EIO),
                                        failure("fread", EIO), Failure{"fread", {.fails = false, .error = ENOMEM}},
                                        failure("fileno", EBADF), failure("flock", ENOLCK), failure("stat", EACCES),
                                        failure("realloc", ENOMEM),
                                        Failure{"realloc", {.fails = false, .error = ENOMEM}},
                                        Failure{"realloc", {.fails = true, .error = 0}}),
                                 every_call(), once_and_from_there_on()));

// There are more than a hundred of them, each like the other, so one pass over them will do.
INSTANTIATE_TEST_SUITE_P(OfAnyPrint, BbuFailureSweep,
                         Combine(Values(failure("fprintf", ENOSPC)), Values(DisturbedCall::kFirstFull),
                                 Values(Extent::kOnce)));

// The index of what was remembered is the only memory beside the lists; a delta does without it.
INSTANTIATE_TEST_SUITE_P(OfADelta, BbuFailureSweep,
                         Combine(Values(failure("malloc", ENOMEM)), Values(DisturbedCall::kDelta),
                                 once_and_from_there_on()));

}  // namespace
}  // namespace tests
