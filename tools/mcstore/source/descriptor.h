// A file descriptor that closes itself.
#pragma once

#include <unistd.h>

namespace mcstore {

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}  // -1 for none
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor() {
    if (fd_ != -1) close(fd_);
  }

  int number() const { return fd_; }
  bool is_open() const { return fd_ != -1; }

 private:
  int fd_;
};

}  // namespace mcstore
