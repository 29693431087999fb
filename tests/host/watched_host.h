// A host that loads the shared object that ships, watches all it does, and makes its calls fail.
//
// It starts with a freshly loaded plug-in, an empty file system, no trace and a quiet system log.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "host/bytes.h"
#include "host/libc_stand_ins.h"
#include "host/plugin.h"
#include "host/reply_buffer.h"
#include "host/store_directory.h"
#include "mcserver_storage.h"

namespace tests {

// What the host passes to an entry point.
struct CallOptions {
  uint32_t size = 65536;
  std::vector<Growth> growth = {Growth::kInPlace};
  uint32_t most = UINT32_MAX;  // the host refuses to grow beyond it
  bool null_buffer = false;
};

// What came of the call.
struct Reply {
  int32_t status;
  uint32_t length;                 // 0xDEADBEEF where the plug-in did not write it
  Bytes buffer;                    // the whole buffer that the host ended up with
  std::vector<uint32_t> requests;  // the sizes that the plug-in asked for

  Bytes bytes() const { return buffer.slice(0, length); }
};

inline constexpr uint32_t kUnwrittenLength = 0xDEADBEEF;

// What a function that is called left behind on the standard streams.
struct Printed {
  int result;
  std::string out;
  std::string err;
};

// Makes the nth call of a libc function fail, counted from 1 and from when this was asked for.
struct Fault {
  std::string function;
  int nth;
  host::Verdict verdict;
};

class WatchedHost : private host::LibcWatcher {
 public:
  WatchedHost();
  WatchedHost(const WatchedHost &) = delete;
  WatchedHost &operator=(const WatchedHost &) = delete;
  ~WatchedHost() override;

  // Calls an entry point by its name. Afterwards no descriptor may be left open, and the locks must be free.
  Reply call(const std::string &entry_point, const CallOptions &options = {});

  // A function's result and what it prints. No descriptor may be left open.
  Printed printed_by(const std::function<int()> &function);

  // Runs a decoder, by its name.
  Printed decode(const std::string &decoder, const char *input_dir, const char *output_dir);

  // Any other function of the plug-in, to be called: PLUGIN(print_ctlrinfo)(record, nullptr).
#define PLUGIN(function) plugin(static_cast<std::add_pointer_t<decltype(function)>>(nullptr), #function)
  template <typename Result, typename... Arguments>
  auto plugin(Result (*)(Arguments...), const std::string &name) {
    return [this, function = plugin_->function<Result(Arguments...)>(name)](Arguments... arguments) {
      const host::PluginScope scope(*this);
      return function(arguments...);
    };
  }

  // A variable that the plug-in exports.
  template <typename Variable>
  Variable *variable(const std::string &name) {
    return plugin_->variable<Variable>(name);
  }

  // The nth call from now on of this libc function fails, with this errno.
  void fail(const std::string &function, int nth, int error) { inject(function, nth, {.fails = true, .error = error}); }
  void inject(const std::string &function, int nth, host::Verdict verdict);
  // Runs once, just before the nth call from now on of this libc function.
  void before_call(const std::string &function, int nth, std::function<void()> action);
  // Runs just before the nth call and before each one after it.
  void before_calls_from(const std::string &function, int nth, std::function<void()> action);

  // What was to fail and has not yet will not.
  void forget_faults();

  // The libc calls since the last forget_calls(), as "fopen /var/storctlr_info" or "flock 1".
  const std::vector<std::string> &calls() const { return calls_; }
  void forget_calls() { calls_.clear(); }

  // Switches tracing on (it is off at first). trace() gives what was traced since the last time it was asked.
  void trace_at(int32_t level);
  std::string trace();

  // The system log since the last time it was asked, a string for each line.
  std::vector<std::string> system_log();

  // Nothing that the plug-in allocated may be left then.
  void unload();
  void load();

  StoreDirectory files;

 protected:
  // What no call may do.
  virtual void complain(const std::string &what) = 0;

 private:
  std::string real_path(const std::string &path) override { return files.real(path); }
  host::Verdict before(const std::string &function, const std::string &detail) override;
  void on_syslog(int priority, const std::string &line) override;
  void on_memory(void *given_back, void *taken, const void *caller) override;

  struct Hook {
    std::string function;
    int calls_to_go;
    bool again;
    std::function<void()> action;
  };

  std::optional<host::Plugin> plugin_;
  std::vector<std::string> calls_;
  std::set<const void *> blocks_;
  std::vector<Fault> faults_;
  std::vector<Hook> hooks_;
  std::vector<std::string> system_log_;
  FILE *trace_stream_;
  long trace_read_ = 0;
};

}  // namespace tests
