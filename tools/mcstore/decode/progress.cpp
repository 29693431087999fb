#include "mcstore/decode/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace mcstore {
namespace {

// What takes less than about a second needs no bar.
constexpr uint64_t kLong = 8 << 20;
constexpr size_t kWidth = 40;

}  // namespace

ProgressBar::ProgressBar(uint64_t total_bytes) : total_(total_bytes) {
  if (total_ >= kLong && isatty(STDERR_FILENO)) terminal_ = dup(STDERR_FILENO);
}

ProgressBar::~ProgressBar() {
  if (terminal_ == -1) return;
  dprintf(terminal_, "\r\033[K");
  close(terminal_);
}

void ProgressBar::show(uint64_t done_bytes) {
  if (terminal_ == -1) return;
  const uint64_t done = std::min(done_bytes, total_);
  const int percent = static_cast<int>(done * 100 / total_);
  if (percent == shown_) return;
  shown_ = percent;

  std::string bar(kWidth, '.');
  bar.replace(0, done * kWidth / total_, done * kWidth / total_, '#');
  dprintf(terminal_, "\r[%s] %d %%", bar.c_str(), percent);
}

}  // namespace mcstore
