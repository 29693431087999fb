// A situation that is swept: a host in the middle of its work, one call of which is disturbed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/plugin_test.h"
#include "sweep/failures.h"

namespace tests {

// A host that the mechanism can get at.
class SweptHost : public PluginTest {
 public:
  using PluginTest::before_call;
  using PluginTest::before_calls_from;
  using PluginTest::call;
  using PluginTest::calls;
  using PluginTest::files;
  using PluginTest::forget_calls;
  using PluginTest::inject;
  using PluginTest::load;
  using PluginTest::plugin;
  using PluginTest::system_log;
  using PluginTest::trace;
  using PluginTest::trace_at;
  using PluginTest::unload;
  void TestBody() override {}
};

// What came of a call.
struct Outcome {
  int32_t result = 0;
  uint32_t length = 0;
  Bytes answer = {};

  bool operator==(const Outcome &) const = default;
};
void PrintTo(const Outcome &outcome, std::ostream *out);

// Which call follows the disturbed one: a repair by one of them would hide what the other would run into.
enum class Next { kFull, kDelta };

class Scene {
 public:
  Scene() = default;
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;
  virtual ~Scene() = default;

  // The call that is disturbed.
  virtual Outcome act() = 0;

  // Is the outcome the same although this happens?
  virtual bool goes_unnoticed(const Failure &failure) const { return !failure.verdict.fails; }

  // What must hold of the outcome of a call that is not disturbed, and of one that is.
  virtual void check_undisturbed(const Outcome &) {}
  virtual void check_disturbed(const Outcome &, const Outcome & /* undisturbed */, const Failure &) {}

  // Goes on with the host's work, which must be as good as ever. What is returned must be what an undisturbed host
  // shows. `failure` is null for that one.
  virtual std::string go_on(Next next, const Outcome &outcome, const Failure *failure) = 0;

  SweptHost host;
};

// Its name begins with the export that is called.
struct Situation {
  std::string name;
  std::function<std::unique_ptr<Scene>()> set;
};
inline void PrintTo(const Situation &situation, std::ostream *out) { *out << situation.name; }

std::vector<Situation> situations_of_retrievals();
std::vector<Situation> situations_of_decoders();
std::vector<Situation> situations_of_helpers();

}  // namespace tests
