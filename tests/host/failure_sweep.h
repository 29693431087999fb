// Makes each libc call of a plug-in's call fail in turn. A kind's sweep brings a Scene: a host in the middle of its
// work, which is disturbed in one call and must then be as good as ever.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <tuple>

#include "host/plugin_test.h"

namespace tests {

struct Failure {
  const char *function;
  host::Verdict verdict;
};

inline Failure failure(const char *function, int error) {
  return {.function = function, .verdict = {.fails = true, .error = error}};
}

inline void PrintTo(const Failure &failure, std::ostream *out) {
  *out << failure.function << (failure.verdict.fails ? " fails" : " succeeds") << " with errno "
       << failure.verdict.error;
}

enum class Extent { kOnce, kFromThereOn };

inline void PrintTo(Extent extent, std::ostream *out) { *out << (extent == Extent::kOnce ? "once" : "from there on"); }

// Which call is disturbed: the first of all, or one with something to compare.
enum class DisturbedCall { kFirstFull, kFirstDelta, kFull, kDelta };

inline bool is_first(DisturbedCall call) {
  return call == DisturbedCall::kFirstFull || call == DisturbedCall::kFirstDelta;
}
inline bool is_delta(DisturbedCall call) { return call == DisturbedCall::kFirstDelta || call == DisturbedCall::kDelta; }

inline void PrintTo(DisturbedCall call, std::ostream *out) {
  constexpr const char *kNames[] = {"first full", "first delta", "full", "delta"};
  *out << kNames[static_cast<size_t>(call)];
}

inline auto once_and_from_there_on() { return testing::Values(Extent::kOnce, Extent::kFromThereOn); }
inline auto every_call() {
  return testing::Values(DisturbedCall::kFirstFull, DisturbedCall::kFirstDelta, DisturbedCall::kFull,
                         DisturbedCall::kDelta);
}

// What a sweep of retrievals is run for.
using RetrievalSweep = testing::TestWithParam<std::tuple<Failure, DisturbedCall, Extent>>;

// A host of its own for each call that is disturbed; `Base` is the kind's fixture.
template <typename Base>
class SweepScene : public Base {
 public:
  void TestBody() override {}

 protected:
  // Calls while the nth call of that libc function fails, or all from there on. True when there was such a call.
  template <typename Call>
  bool disturb_during(const Failure &failure, int nth, Extent extent, Call call) {
    this->forget_calls();
    const auto disturb = [this, failure] {
      if (is_disturbed_) this->inject(failure.function, 1, failure.verdict);
    };
    if (extent == Extent::kOnce)
      this->before_call(failure.function, nth, disturb);
    else
      this->before_calls_from(failure.function, nth, disturb);

    is_disturbed_ = true;
    call();
    is_disturbed_ = false;

    const auto number = std::ranges::count_if(
        this->calls(), [&](const std::string &one) { return one.substr(0, one.find(' ')) == failure.function; });
    return number >= nth;
  }

 private:
  bool is_disturbed_ = false;
};

// `setting` is what the scene is made with.
template <typename Scene, typename Setting>
void sweep(const Failure &failure, Extent extent, const Setting &setting) {
  int nth = 0;
  bool was_disturbed = true;
  while (was_disturbed && !testing::Test::HasFailure()) {
    SCOPED_TRACE("call " + std::to_string(++nth));
    Scene scene(setting);
    was_disturbed = scene.disturb(failure, nth, extent);
    scene.expect_it_to_be_as_good_as_ever(failure);
  }
  EXPECT_GT(nth, 1) << "there was no such call";
}

}  // namespace tests
