// Keeps what is printed to a standard stream.
#pragma once

#include <cstdio>
#include <string>

namespace mcstore {

// While this object lives, the stream leads to a temporary file. Throws std::system_error when there can be none.
class Captured {
 public:
  explicit Captured(FILE *stream);
  Captured(const Captured &) = delete;
  Captured &operator=(const Captured &) = delete;
  ~Captured();

  // What was printed.
  std::string text();

 private:
  FILE *stream_;
  FILE *file_;
  int real_;  // the descriptor that the stream led to
};

}  // namespace mcstore
