// The plug-in, loaded the way a daemon loads it.
#pragma once

#include <cstdint>
#include <string>

namespace host {

// The signature of every entry point.
using EntryPoint = int32_t(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

class Plugin {
 public:
  // Loads the shared object, all of its symbols resolved. Throws std::runtime_error with the loader's message.
  explicit Plugin(const std::string &path);
  Plugin(const Plugin &) = delete;
  Plugin &operator=(const Plugin &) = delete;
  ~Plugin();

  // An exported function by its name. Throws std::runtime_error when there is none.
  template <typename Function>
  Function *function(const std::string &name) const {
    return reinterpret_cast<Function *>(symbol(name));
  }

  // An exported variable, likewise.
  template <typename Variable>
  Variable *variable(const std::string &name) const {
    return static_cast<Variable *>(symbol(name));
  }

 private:
  void *symbol(const std::string &name) const;

  void *handle_;
};

}  // namespace host
