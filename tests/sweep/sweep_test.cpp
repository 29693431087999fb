// Every libc call of every situation is made to fail, once and from there on, in every way in which it may. Whatever
// fails, the plug-in answers with one of its results, keeps nothing open, locked or allocated, and is as good as ever
// afterwards. Which calls there are shows when nothing fails. script/check-sweep counts these points.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <memory>

#include "host/open_descriptors.h"
#include "sweep/scene.h"

namespace tests {

void PrintTo(const Outcome &outcome, std::ostream *out) {
  *out << "result " << outcome.result << ", length " << outcome.length << ", ";
  PrintTo(outcome.answer, out);
}

namespace {

enum class Extent { kOnce, kFromThereOn };

// One call of a situation, and what becomes of it.
struct Point {
  Failure failure;
  int nth;  // of the calls to the function
  Extent extent;
};

std::string to_string(const Point &point) {
  return "call " + std::to_string(point.nth) + ": " + to_string(point.failure) +
         (point.extent == Extent::kOnce ? ", once" : ", from there on");
}

Outcome act_and_look(Scene &scene) {
  const auto descriptors = open_descriptors();
  const Outcome outcome = scene.act();
  EXPECT_EQ(open_descriptors(), descriptors) << "a descriptor is left open";
  for (const char *path : {"/var/storctlr_info", "/var/nvmectlr_info"})
    EXPECT_TRUE(scene.host.files.is_unlocked(path)) << path << " is left locked";
  return outcome;
}

Outcome act_disturbed(Scene &scene, const Point &point) {
  // The host keeps its hooks, longer than this call.
  struct State {
    bool is_active = true;
    bool was_met = false;
  };
  const auto state = std::make_shared<State>();
  const auto disturb = [state, &host = scene.host, failure = point.failure] {
    if (!state->is_active) return;
    state->was_met = true;
    host.inject(failure.function, 1, failure.verdict);
  };
  if (point.extent == Extent::kOnce)
    scene.host.before_call(point.failure.function, point.nth, disturb);
  else
    scene.host.before_calls_from(point.failure.function, point.nth, disturb);

  const Outcome outcome = act_and_look(scene);
  state->is_active = false;
  EXPECT_TRUE(state->was_met) << "there was no such call";
  return outcome;
}

// What an undisturbed host shows.
struct Reference {
  Outcome outcome;
  std::vector<std::string> calls;  // the functions
  std::array<std::string, 2> afterwards;
};

Reference undisturbed(const Situation &situation) {
  Reference reference;
  for (const Next next : {Next::kFull, Next::kDelta}) {
    const std::unique_ptr<Scene> scene = situation.set();
    scene->host.forget_calls();
    reference.outcome = act_and_look(*scene);
    reference.calls.clear();
    for (const std::string &call : scene->host.calls()) reference.calls.push_back(call.substr(0, call.find(' ')));
    scene->check_undisturbed(reference.outcome);
    reference.afterwards[static_cast<size_t>(next)] = scene->go_on(next, reference.outcome, nullptr);
  }
  return reference;
}

void run(const Situation &situation, const Reference &reference, const Point &point) {
  SCOPED_TRACE(to_string(point));
  const auto run_before = [&](Next next) {
    SCOPED_TRACE(next == Next::kFull ? "before a full call" : "before a delta");
    const std::unique_ptr<Scene> scene = situation.set();
    const Outcome outcome = act_disturbed(*scene, point);
    if (scene->goes_unnoticed(point.failure)) {
      EXPECT_EQ(outcome, reference.outcome);
    } else {
      scene->check_disturbed(outcome, reference.outcome, point.failure);
    }
    EXPECT_EQ(scene->go_on(next, outcome, &point.failure), reference.afterwards[static_cast<size_t>(next)]);
    return scene->goes_unnoticed(point.failure);
  };

  // What goes unnoticed leaves the same host behind, once or from there on.
  const bool went_unnoticed = run_before(point.extent == Extent::kOnce ? Next::kFull : Next::kDelta);
  if (amount() == Amount::kAll && !went_unnoticed)
    run_before(point.extent == Extent::kOnce ? Next::kDelta : Next::kFull);
}

// Of hundreds of prints in a row, each like the other, some will do.
bool is_one_of_many(const std::string &function, int nth, Extent extent) {
  constexpr int kOneIn = 7;
  return only_writes(function) && nth > 3 && (nth % kOneIn != 0 || extent == Extent::kFromThereOn);
}

// Counts the points where only some are wanted: a number that shares no factor with the ways to fail meets each of
// them.
bool is_left_out() {
  constexpr int kOneIn = 5;
  static int points = 0;
  return amount() == Amount::kFew && points++ % kOneIn != 0;
}

// Returns the number of points, of which the last one is the first that went wrong.
int sweep(const Situation &situation) {
  const Reference reference = undisturbed(situation);
  int points = 0;
  std::map<std::string, int> number_of_calls;
  for (const std::string &function : reference.calls) {
    const int nth = ++number_of_calls[function];
    for (const host::Verdict &verdict : failures_of(function))
      for (const Extent extent : {Extent::kOnce, Extent::kFromThereOn}) {
        if (!is_everything_swept() && is_one_of_many(function, nth, extent)) continue;
        if (is_left_out()) continue;
        if (testing::Test::HasFailure()) return points;
        points++;
        if (amount() != Amount::kCount) run(situation, reference, {{function, verdict}, nth, extent});
      }
  }
  return points;
}

std::vector<Situation> all_situations() {
  std::vector<Situation> all = situations_of_retrievals();
  for (const auto &more : {situations_of_decoders(), situations_of_helpers()})
    all.insert(all.end(), more.begin(), more.end());
  return all;
}

std::string name_of(const testing::TestParamInfo<Situation> &info) {
  std::string name = info.param.name;
  std::ranges::replace_if(
      name, [](unsigned char c) { return !isalnum(c); }, '_');
  return name;
}

class Sweep : public testing::TestWithParam<Situation> {};

TEST_P(Sweep, LeavesNothingBehindWhicheverCallFails) {
  const int points = sweep(GetParam());

  RecordProperty("situation", GetParam().name);
  RecordProperty("points", points);
}

INSTANTIATE_TEST_SUITE_P(, Sweep, testing::ValuesIn(all_situations()), name_of);

}  // namespace
}  // namespace tests
