// Where the plug-in traces to.
#pragma once

#include <cstdio>

namespace mcstore {

// A stream to standard error. Traces quote texts of devices, so each line is made printable on its way.
class Trace {
 public:
  Trace();
  Trace(const Trace &) = delete;
  Trace &operator=(const Trace &) = delete;
  ~Trace();

  FILE *stream() const { return stream_; }

 private:
  FILE *stream_;
};

}  // namespace mcstore
