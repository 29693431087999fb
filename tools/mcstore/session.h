// One life of the plug-in, as a daemon would host it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "host/plugin.h"
#include "host/redirection.h"
#include "mcstore/reply_memory.h"

namespace mcstore {

// The shared object at `path`; if that is empty, the one beside this program, or the system's. Throws
// std::runtime_error.
host::Plugin load_plugin(const std::string &path);

struct SessionOptions {
  std::string plugin;            // as load_plugin() takes it
  std::string root;              // where the plug-in's absolute paths begin; empty for the real ones
  int32_t trace_level = 0;       // the plug-in traces to standard error when this is above 2
  uint32_t buffer_size = 65536;  // what the host has at first; it grants whatever the plug-in asks for
};

// A call that the plug-in answered with a status other than 0.
class PluginFailure : public std::runtime_error {
 public:
  PluginFailure(const std::string &entry_point, int32_t status);

  int32_t status() const { return status_; }

 private:
  int32_t status_;
};

class Session {
 public:
  // Throws std::runtime_error when the plug-in cannot be loaded.
  explicit Session(const SessionOptions &options);

  // Calls the entry point and returns the reply's bytes. Throws PluginFailure.
  std::string call(const std::string &entry_point);

 private:
  host::BelowRoot root_;
  host::Plugin plugin_;
  ReplyMemory memory_;
};

}  // namespace mcstore
