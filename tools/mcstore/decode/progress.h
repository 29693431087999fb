// A bar on the terminal that tells how far a long piece of work is.
#pragma once

#include <cstdint>

namespace mcstore {

// Draws on standard error as it is when this object is made; nothing if that is no terminal, or the work is short.
class ProgressBar {
 public:
  explicit ProgressBar(uint64_t total_bytes);
  ProgressBar(const ProgressBar &) = delete;
  ProgressBar &operator=(const ProgressBar &) = delete;
  ~ProgressBar();  // wipes it away

  void show(uint64_t done_bytes);

 private:
  uint64_t total_;
  int terminal_ = -1;  // none
  int shown_ = -1;     // percent
};

}  // namespace mcstore
