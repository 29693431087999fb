// Every libc call of a retrieval is made to fail once, and then from there on. Whatever fails, the plug-in answers with
// one of its results, keeps nothing open or locked, and the next call is as good as ever.

#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <tuple>

#include "host/plugin_test.h"
#include "mcserver_storage/controllers/controller_bytes.h"
#include "mcserver_storage/controllers/controller_test.h"

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
constexpr int kMostCalls = 250;

// A host of its own for each call that is disturbed.
class Scene : public ControllerTest {
 public:
  explicit Scene(Mode mode) : mode_(mode) {
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_ctlrdebug", "");
    trace_at(3);
    if (mode == Mode::kFull || mode == Mode::kDelta) {
      store(kNotReady, before());
      full();
    }
    store(kReady, after(), 2000);
    forget_calls();
  }

  void TestBody() override {}

  // A null list without an error is no failure: it is exchanged like any other, and the next call copes with it too.
  void exchange_null_lists() { full(); }

  // True when there was such a call to disturb.
  bool disturb(const Failure &failure, int nth, Extent extent) {
    if (failure.function == std::string("fscanf")) files.write_text("/etc/product", "tarnika");
    const int last = extent == Extent::kOnce ? nth : nth + kMostCalls;
    for (int call = nth; call <= last; ++call)
      before_call(failure.function, call, [this, failure] {
        if (is_disturbed_) inject(failure.function, 1, failure.verdict);
      });

    // The host is asked for room for the file, and for the gone ones once more.
    const CallOptions options = {.size = 18, .growth = {Growth::kInPlace, Growth::kMove}};
    is_disturbed_ = true;
    const Reply reply = mode_ == Mode::kDelta || mode_ == Mode::kFirstDelta ? delta(options) : full(options);
    is_disturbed_ = false;

    EXPECT_THAT(reply.status, AnyOf(0, -13, -35, -37));
    EXPECT_EQ(reply.length, reply.status == 0 ? 18u + 1294u * reply.buffer[4] : 0u);
    return calls_of(failure.function) >= nth;
  }

  void expect_it_to_be_as_good_as_ever() {
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
  int calls_of(const std::string &function) const {
    const auto number = std::ranges::count_if(
        calls(), [&](const std::string &call) { return call == function || call.starts_with(function + ' '); });
    EXPECT_LT(number, kMostCalls);
    return static_cast<int>(number);
  }

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

  Mode mode_;
  bool is_disturbed_ = false;
};

class FailureSweep : public testing::TestWithParam<std::tuple<Failure, Mode, Extent>> {};

TEST_P(FailureSweep, LeavesNothingBehindWhicheverCallFails) {
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

const auto kExtents = Values(Extent::kOnce, Extent::kFromThereOn);

INSTANTIATE_TEST_SUITE_P(
    OfAnyCall, FailureSweep,
    Combine(
        Values(Failure{"fopen", {.fails = true, .error = ENOENT}}, Failure{"fopen", {.fails = true, .error = EMFILE}},
               Failure{"fclose", {.fails = true, .error = EIO}}, Failure{"fread", {.fails = true, .error = EIO}},
               Failure{"fread", {.fails = false, .error = ENOMEM}}, Failure{"fileno", {.fails = true, .error = EBADF}},
               Failure{"flock", {.fails = true, .error = ENOLCK}}, Failure{"stat", {.fails = true, .error = EACCES}},
               Failure{"realloc", {.fails = true, .error = ENOMEM}},
               Failure{"realloc", {.fails = false, .error = ENOMEM}}, Failure{"realloc", {.fails = true, .error = 0}},
               Failure{"fprintf", {.fails = true, .error = ENOSPC}}),
        Values(Mode::kFirstFull, Mode::kFirstDelta, Mode::kFull, Mode::kDelta), kExtents));

INSTANTIATE_TEST_SUITE_P(OfAFirstCall, FailureSweep,
                         Combine(Values(Failure{"fflush", {.fails = true, .error = EIO}},
                                        Failure{"fscanf", {.fails = true, .error = EIO}}),
                                 Values(Mode::kFirstFull, Mode::kFirstDelta), kExtents));

INSTANTIATE_TEST_SUITE_P(OfADelta, FailureSweep,
                         Combine(Values(Failure{"ctime", {.fails = true, .error = EOVERFLOW}}),
                                 Values(Mode::kFirstDelta, Mode::kDelta), kExtents));

INSTANTIATE_TEST_SUITE_P(OfADeltaWithGoneControllers, FailureSweep,
                         Combine(Values(Failure{"malloc", {.fails = true, .error = ENOMEM}}), Values(Mode::kDelta),
                                 kExtents));

}  // namespace
}  // namespace tests
