// Stands between the plug-in and libc, for tests and fuzzing.
//
// What ships can lead the plug-in's paths elsewhere (host/redirection.h). A program that links this library as well,
// with -rdynamic, sees every libc call of the plug-in that matters, and can make it fail. Only calls made inside a
// PluginScope are seen; the program's own go straight on to libc.
#pragma once

#include <optional>
#include <string>

#include "host/redirection.h"

namespace host {

// What becomes of a call. A failing call returns what its manual says, with errno set to `error`, unless that is 0. A
// call that goes through with an error does its work first; a fopen or stat does so afterwards, so that an error of
// its own comes through.
struct Verdict {
  bool fails = false;
  int error = 0;
  bool is_partial = false;  // an fread of bytes that fails has delivered half of them
};

class LibcWatcher : public Redirection {
 public:
  // Where the plug-in's absolute path leads.
  virtual std::string real_path(const std::string &path) = 0;

  // Called before each libc call. `function` is the plain name (fopen, not fopen64); `detail` is the path, for those
  // that take one, the operation of an flock, or the size of a bounded copy ("31", or "16 of 31" if the two differ).
  virtual Verdict before(const std::string &function, const std::string &detail) = 0;

  // A line for the system log, formatted, instead of syslog itself.
  virtual void on_syslog(int priority, const std::string &line) = 0;

  // A block that was given back, one that was taken, or, where it was resized, both; null for none. libc takes memory
  // too, for itself: `caller` is where the call comes from.
  virtual void on_memory(void * /*given_back*/, void * /*taken*/, const void * /*caller*/) {}

 private:
  std::optional<std::string> resolve(const char *function, const std::string &path) final;
  void log(int priority, const std::string &line) final;
};

// The watcher of the calls that this scope suspends; null where they are only redirected, or nobody's.
LibcWatcher *watcher_suspended_by(const HostScope &scope);

}  // namespace host
