// Stands between the plug-in and libc.
//
// A program's own functions come before libc's when a shared object is loaded into it. A program that links this
// library, with -rdynamic, therefore sees every libc call of the plug-in that matters: it can tell where a path leads,
// make a call fail, and take the system log lines. Only calls made inside a PluginScope are seen; the program's own
// go straight on to libc.
#pragma once

#include <string>

namespace host {

// What becomes of a call. A failing call returns what its manual says, with errno set to `error`, unless that is 0. A
// call that goes through with an error does its work first.
struct Verdict {
  bool fails = false;
  int error = 0;
};

class LibcWatcher {
 public:
  virtual ~LibcWatcher() = default;

  // The path to use instead of the plug-in's own.
  virtual std::string resolve(const std::string &path) = 0;

  // Called before each libc call. `function` is the plain name (fopen, not fopen64); `detail` is the path, for those
  // that take one, the operation of an flock, or the size of a bounded copy ("31", or "16 of 31" if the two differ).
  virtual Verdict before(const std::string &function, const std::string &detail) = 0;

  // Called after an fclose that failed by itself: what was written may not all be in the file.
  virtual void on_failed_close(int /*error*/) {}

  // A line for the system log, formatted, instead of syslog itself.
  virtual void on_syslog(int priority, const std::string &line) = 0;
};

// While this object lives, the calling thread's libc calls are the plug-in's.
class PluginScope {
 public:
  explicit PluginScope(LibcWatcher &watcher);
  PluginScope(const PluginScope &) = delete;
  PluginScope &operator=(const PluginScope &) = delete;
  ~PluginScope();
};

// While this object lives, they are the program's own again: for what the plug-in calls back.
class HostScope {
 public:
  HostScope();
  HostScope(const HostScope &) = delete;
  HostScope &operator=(const HostScope &) = delete;
  ~HostScope();

  LibcWatcher *suspended() const { return suspended_; }

 private:
  LibcWatcher *suspended_;
};

}  // namespace host
