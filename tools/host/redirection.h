// Stands between the plug-in and the file system, and between it and the system log.
//
// A program's own functions come before libc's when a shared object is loaded into it. A program that links this
// library and exports fopen, stat and syslog in their several forms (redirections.list) therefore decides where the
// plug-in's paths lead, and takes its system log lines. Only calls made inside a PluginScope are seen; the program's
// own go straight on to libc.
#pragma once

#include <optional>
#include <string>

namespace host {

class Redirection {
 public:
  virtual ~Redirection() = default;

  // The path to use instead of the plug-in's own. `function` is fopen or stat, whatever the form. Without a path the
  // call fails; errno is what this leaves.
  virtual std::optional<std::string> resolve(const char *function, const std::string &path) = 0;

  // A line for the system log, formatted, instead of syslog itself.
  virtual void log(int priority, const std::string &line) = 0;
};

// Absolute paths lead below a directory, and log lines to standard error: what is found there is no news of this
// machine.
class BelowRoot : public Redirection {
 public:
  explicit BelowRoot(std::string root);  // empty for the real root

  std::optional<std::string> resolve(const char *function, const std::string &path) override;
  void log(int priority, const std::string &line) override;

 private:
  std::string root_;
};

// While this object lives, the calling thread's calls are the plug-in's.
class PluginScope {
 public:
  explicit PluginScope(Redirection &redirection);
  PluginScope(const PluginScope &) = delete;
  PluginScope &operator=(const PluginScope &) = delete;
  ~PluginScope();
};

// Is there such an object?
bool in_plugin();

// While this object lives, they are the program's own again: for what the plug-in calls back.
class HostScope {
 public:
  HostScope();
  HostScope(const HostScope &) = delete;
  HostScope &operator=(const HostScope &) = delete;
  ~HostScope();

  Redirection *suspended() const { return suspended_; }

 private:
  Redirection *suspended_;
};

}  // namespace host
