// One life of the plug-in, as a daemon would host it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/plugin.h"
#include "mcstore/kinds/value.h"
#include "mcstore/source/place.h"
#include "mcstore/source/reply_memory.h"
#include "mcstore/source/trace.h"

namespace mcstore {

// The shared object at `path`; if that is empty, the one beside this program, or the system's. Throws
// std::runtime_error.
host::Plugin load_plugin(const std::string &path);

struct SessionOptions {
  std::string plugin = {};       // as load_plugin() takes it
  int32_t trace_level = 0;       // the plug-in traces to standard error when this is above 2
  uint32_t buffer_size = 65536;  // what the host has at first; it grants whatever the plug-in asks for
};

// A call that the plug-in answered with a status other than 0.
class PluginFailure : public std::runtime_error {
 public:
  PluginFailure(std::string_view entry_point, int32_t status);

  int32_t status() const { return status_; }

 private:
  int32_t status_;
};

class Session {
 public:
  // Throws std::runtime_error when the plug-in cannot be loaded.
  Session(const SessionOptions &options, Place &place);

  // Calls the entry point and returns the reply's bytes, until the next call. Throws PluginFailure.
  Record call(std::string_view entry_point);

 private:
  Place &place_;
  Trace trace_;
  host::Plugin plugin_;
  ReplyMemory memory_;
};

}  // namespace mcstore
