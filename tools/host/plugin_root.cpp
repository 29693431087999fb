// Preloaded into a host that knows nothing of it: the plug-in then finds its files below the directory MCSERVER_ROOT,
// and its system log lines go to standard error.
//
//   LD_PRELOAD=libplugin_root.so MCSERVER_ROOT=DIR ./host
//
// This holds for the host's first thread, and for what it opens itself where the plug-in's files are, too.

#include <cstdlib>

#include "host/redirection.h"

namespace {

// A host has files of its own, an interpreter even its whole library: these stay where they are.
bool may_be_the_plugins(const std::string &path) {
  return path.starts_with("/var/") || path.starts_with("/debug/") || path == "/etc/product";
}

class PluginRoot : public host::BelowRoot {
 public:
  PluginRoot() : BelowRoot(getenv("MCSERVER_ROOT") ? getenv("MCSERVER_ROOT") : "") {
    unsetenv("LD_PRELOAD");  // what the host starts is no host
  }

  std::optional<std::string> resolve(const char *function, const std::string &path) override {
    return may_be_the_plugins(path) ? BelowRoot::resolve(function, path) : path;
  }
};

PluginRoot root;
const host::PluginScope scope(root);

}  // namespace
