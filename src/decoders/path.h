// A path as the decoders use it: what does not fit is cut off.
#pragma once

#include <cstdio>

namespace mcserver::decoders {

class Path {
 public:
  explicit Path(const char *path) { snprintf(text_, sizeof text_, "%s", path); }
  Path(const char *directory, const char *name, const char *ending = "") {
    snprintf(text_, sizeof text_, "%s/%s%s", directory, name, ending);
  }

  const char *c_str() const { return text_; }

 private:
  char text_[320];
};

}  // namespace mcserver::decoders
