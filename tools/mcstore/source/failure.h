// What goes wrong with a source of data. The message is one line that says what, where and why.
#pragma once

#include <stdexcept>

namespace mcstore {

// There is nothing: a file does not exist.
class Missing : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// There is something, and it cannot be read.
class Unreadable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// It can be read, and does not hold what it should.
class Damaged : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace mcstore
