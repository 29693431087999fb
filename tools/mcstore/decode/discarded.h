// Discards what is printed to a standard stream.
#pragma once

#include <cstdio>

namespace mcstore {

// While this object lives, the stream leads nowhere. Throws std::system_error when it cannot be led there.
class Discarded {
 public:
  explicit Discarded(FILE *stream);
  Discarded(const Discarded &) = delete;
  Discarded &operator=(const Discarded &) = delete;
  ~Discarded();

 private:
  FILE *stream_;
  int real_;  // the descriptor that the stream led to
};

}  // namespace mcstore
