// Preloaded into a host that knows nothing of it: the plug-in then finds its files below the directory MCSERVER_ROOT,
// and its system log lines go to standard error.
//
//   LD_PRELOAD=libplugin_root.so MCSERVER_ROOT=DIR ./host
//
// This holds for the host's first thread, and for what it opens itself by an absolute path, too.

#include <cstdio>
#include <cstdlib>

#include "host/libc_stand_ins.h"

namespace {

class PluginRoot : public host::LibcWatcher {
 public:
  PluginRoot() { unsetenv("LD_PRELOAD"); }  // what the host starts is no host

  std::string resolve(const std::string &path) override { return root_ + path; }
  host::Verdict before(const std::string &, const std::string &) override { return {}; }
  void on_syslog(int, const std::string &line) override { fprintf(stderr, "syslog: %s\n", line.c_str()); }

 private:
  const std::string root_ = getenv("MCSERVER_ROOT") ? getenv("MCSERVER_ROOT") : "";
};

PluginRoot root;
const host::PluginScope scope(root);

}  // namespace
