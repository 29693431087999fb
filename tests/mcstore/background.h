// mcstore, running while a test goes on.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

namespace tests {

class Background {
 public:
  // Runs "mcstore ARGUMENTS". Standard error goes where the test's goes.
  explicit Background(const std::string &arguments);
  Background(const Background &) = delete;
  Background &operator=(const Background &) = delete;
  ~Background();  // ends it if it has not ended

  // The next line of its standard output, without its end; empty if there is none in that time.
  std::string line(std::chrono::milliseconds patience = std::chrono::seconds(30));

  // Reads no further.
  void close_output();

  void send(int signal) const;

  // Waits until it ends. Its exit code; -1 if a signal ended it, or if it took too long.
  int exit_code();

 private:
  pid_t pid_;
  int output_;
  std::string read_ = {};
};

}  // namespace tests
