// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <tuple>

#include "mcserver_storage/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::AnyOf;
using testing::Combine;
using testing::IsEmpty;
using testing::Values;

enum class Mode { kFirstFull, kFirstDelta, kFull, kDelta };
enum class Extent { kOnce, kFromThereOn };

void PrintTo(Mode mode, std::ostream *out) {
  constexpr const char *kNames[] = {"first full", "first delta", "full", "delta"};
  *out << kNames[static_cast<size_t>(mode)];
}
void PrintTo(Extent extent, std::ostream *out) { *out << (extent == Extent::kOnce ? "once" : "from there on"); }

struct Failure {
  const char *function;
  host::Verdict verdict;
};
void PrintTo(const Failure &failure, std::ostream *out) {
  *out << failure.function << (failure.verdict.fails ? " fails" : " succeeds") << " with errno "
       << failure.verdict.error;
}

// More than any of the calls that are disturbed here makes of one function.
constexpr int kMostCalls = 160;

// A host of its own for each call that is disturbed.
class Scene : public BbuTest {
 public:
  explicit Scene(Mode mode) : mode_(mode) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_bbudebug", "");
    files.write(kFlashModuleImage, flash_module_image());
    trace_at(3);
    if (mode == Mode::kFull || mode == Mode::kDelta) remember(before());
    store(after(), 2000);
    forget_calls();
  }

  void TestBody() override {}

  // A null list without an error is no failure: it is exchanged like any other, and the next call copes with it too.
  void exchange_null_lists() { full(); }

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    const int last = extent == Extent::kOnce ? nth : nth + kMostCalls;
    for (int call = nth; call <= last; ++call)
      before_call(failure.function, call, [this, failure] {
        if (is_disturbed_) inject(failure.function, 1, failure.verdict);
      });

    const CallOptions options = {.size = 17, .growth = {Growth::kMove}};
    is_disturbed_ = true;
    const Reply reply = mode_ == Mode::kDelta || mode_ == Mode::kFirstDelta ? delta(options) : full(options);
    is_disturbed_ = false;

    EXPECT_THAT(reply.status, AnyOf(0, -13, -35, -37));
    EXPECT_EQ(reply.length, reply.status == 0 ? 17u + 161u * reply.buffer[3] : 0u);
    return calls_of(failure.function) >= nth;
  }

  void expect_it_to_be_as_good_as_ever() {
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
  int calls_of(const std::string &function) const {
    const auto number = std::ranges::count_if(
        calls(), [&](const std::string &call) { return call == function || call.starts_with(function + ' '); });
    EXPECT_LT(number, kMostCalls);
    return static_cast<int>(number);
  }

  // One is gone, one is modified, two are new: more than the lists had room for.
  static std::vector<Bbu> before() { return {bbu_of(0), bbu_of(1)}; }
  static std::vector<Bbu> after() { return {bbu_of(1, 2), bbu_of(2), bbu_of(3)}; }

  Mode mode_;
  bool is_disturbed_ = false;
};

class BbuFailureSweep : public testing::TestWithParam<std::tuple<Failure, Mode, Extent>> {};

TEST_P(BbuFailureSweep, LeavesNothingBehindWhicheverCallFails) {
  const auto &[failure, mode, extent] = GetParam();
  int nth = 0;
  bool was_disturbed = true;

  while (was_disturbed && !HasFailure()) {
    SCOPED_TRACE("call " + std::to_string(++nth));
    Scene scene(mode);
    was_disturbed = scene.disturb(failure, nth, extent);
    if (failure.verdict.fails && failure.verdict.error == 0) scene.exchange_null_lists();
    scene.expect_it_to_be_as_good_as_ever();
  }

  EXPECT_GT(nth, 1) << "there was no such call";
}

const auto kModes = Values(Mode::kFirstFull, Mode::kFirstDelta, Mode::kFull, Mode::kDelta);
const auto kExtents = Values(Extent::kOnce, Extent::kFromThereOn);

INSTANTIATE_TEST_SUITE_P(
    OfAnyCall, BbuFailureSweep,
    Combine(
        Values(Failure{"fopen", {.fails = true, .error = ENOENT}}, Failure{"fopen", {.fails = true, .error = EMFILE}},
               Failure{"fclose", {.fails = true, .error = EIO}}, Failure{"fread", {.fails = true, .error = EIO}},
               Failure{"fread", {.fails = false, .error = ENOMEM}}, Failure{"fileno", {.fails = true, .error = EBADF}},
               Failure{"flock", {.fails = true, .error = ENOLCK}}, Failure{"stat", {.fails = true, .error = EACCES}},
               Failure{"realloc", {.fails = true, .error = ENOMEM}},
               Failure{"realloc", {.fails = false, .error = ENOMEM}}, Failure{"realloc", {.fails = true, .error = 0}}),
        kModes, kExtents));

// There are more than a hundred of them, and each is like the other.
INSTANTIATE_TEST_SUITE_P(OfAnyPrint, BbuFailureSweep,
                         Combine(Values(Failure{"fprintf", {.fails = true, .error = ENOSPC}}), Values(Mode::kFirstFull),
                                 kExtents));

// The index of what was remembered is the only memory beside the lists; a delta does without it.
INSTANTIATE_TEST_SUITE_P(OfADelta, BbuFailureSweep,
                         Combine(Values(Failure{"malloc", {.fails = true, .error = ENOMEM}}), Values(Mode::kDelta),
                                 kExtents));

}  // namespace
}  // namespace tests
