// A stdio stream that closes itself.
#pragma once

#include <cstdio>
#include <utility>

namespace mcserver {

class Stream {
 public:
  explicit Stream(FILE *stream) : stream_(stream) {}
  Stream(const Stream &) = delete;
  Stream &operator=(const Stream &) = delete;
  ~Stream() {
    if (stream_) fclose(stream_);
  }

  explicit operator bool() const { return stream_ != nullptr; }
  FILE *get() const { return stream_; }

  // Closes it now, for what fclose returns.
  int close() { return fclose(std::exchange(stream_, nullptr)); }

 private:
  FILE *stream_;
};

}  // namespace mcserver
