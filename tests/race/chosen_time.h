// How long a race is run. It is as good as the time that it gets: MCS_SECONDS gives each of them that many seconds.
#pragma once

#include <chrono>
#include <cstdlib>

namespace tests {

class ChosenTime {
 public:
  explicit ChosenTime(std::chrono::milliseconds by_default)
      : end_(std::chrono::steady_clock::now() + chosen(by_default)) {}

  bool is_left() const { return std::chrono::steady_clock::now() < end_; }

 private:
  static std::chrono::milliseconds chosen(std::chrono::milliseconds by_default) {
    const char *const seconds = getenv("MCS_SECONDS");
    return seconds ? std::chrono::milliseconds(atol(seconds) * 1000) : by_default;
  }

  std::chrono::steady_clock::time_point end_;
};

}  // namespace tests
