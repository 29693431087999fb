// Preloaded into a host that knows nothing of it: the plug-in then finds its files below the directory MCSERVER_ROOT,
// and its system log lines go to standard error.
//
//   LD_PRELOAD=libplugin_root.so MCSERVER_ROOT=DIR ./host
//
// This holds for the host's first thread, and for what it opens itself where the plug-in's files are, too.

#include <cstdio>
#include <cstdlib>

#include "host/libc_stand_ins.h"

namespace {

// A host has files of its own, an interpreter even its whole library: these stay where they are.
bool may_be_the_plugins(const std::string &path) {
  return path.starts_with("/var/") || path.starts_with("/debug/") || path == "/etc/product";
}

class PluginRoot : public host::LibcWatcher {
 public:
  PluginRoot() { unsetenv("LD_PRELOAD"); }  // what the host starts is no host

  std::string resolve(const std::string &path) override { return may_be_the_plugins(path) ? root_ + path : path; }
  host::Verdict before(const std::string &, const std::string &) override { return {}; }
  void on_syslog(int, const std::string &line) override { fprintf(stderr, "syslog: %s\n", line.c_str()); }

 private:
  const std::string root_ = getenv("MCSERVER_ROOT") ? getenv("MCSERVER_ROOT") : "";
};

PluginRoot root;
const host::PluginScope scope(root);

}  // namespace
