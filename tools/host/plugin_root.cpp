// Preloaded into a host that knows nothing of it: the plug-in then finds its files below the directory MCSERVER_ROOT,
// and its system log lines go to standard error.
//
//   LD_PRELOAD=libplugin_root.so MCSERVER_ROOT=DIR ./host
//
// This holds for the host's first thread, and for what it opens itself by an absolute path, too.

#include <cstdlib>

#include "host/redirection.h"

namespace {

class PluginRoot : public host::BelowRoot {
 public:
  PluginRoot() : BelowRoot(getenv("MCSERVER_ROOT") ? getenv("MCSERVER_ROOT") : "") {
    unsetenv("LD_PRELOAD");  // what the host starts is no host
  }
};

PluginRoot root;
const host::PluginScope scope(root);

}  // namespace
