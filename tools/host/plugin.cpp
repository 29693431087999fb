#include "host/plugin.h"

#include <dlfcn.h>

#include <stdexcept>

namespace host {

Plugin::Plugin(const std::string &path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (!handle_) throw std::runtime_error(dlerror());
}

Plugin::~Plugin() { dlclose(handle_); }

void *Plugin::symbol(const std::string &name) const {
  void *address = dlsym(handle_, name.c_str());
  if (!address) throw std::runtime_error("the plug-in does not export " + name);
  return address;
}

}  // namespace host
