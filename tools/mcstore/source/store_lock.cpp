#include "mcstore/source/store_lock.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

#include "mcstore/source/failure.h"

namespace mcstore {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr Seconds kSilent{2};
constexpr std::chrono::milliseconds kPause{20};

int open_for_locking(const std::string &path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // a pipe must not keep it waiting
  if (fd == -1 && errno == ENOENT) throw Missing(fmt::format("{} does not exist", path));
  if (fd == -1) throw Unreadable(fmt::format("cannot open {}: {}", path, strerror(errno)));
  return fd;
}

// Is the lock held now? False as long as somebody else holds it exclusively.
bool try_lock(int fd, const std::string &path) {
  if (flock(fd, LOCK_SH | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK && errno != EINTR)
    throw Unreadable(fmt::format("cannot lock {}: {}", path, strerror(errno)));
  return false;
}

void wait_for_lock(int fd, const std::string &path, const Patience &patience) {
  const Clock::time_point start = Clock::now();
  for (bool has_told = false; !try_lock(fd, path); std::this_thread::sleep_for(kPause)) {
    const Seconds waited = Clock::now() - start;
    if (patience.seconds && waited.count() >= *patience.seconds)
      throw Unreadable(fmt::format("{} stayed locked by another process for {} s", path, *patience.seconds));
    if (!has_told && waited >= kSilent) {
      fprintf(stderr, "mcstore: waiting for the lock on %s, which another process holds\n", path.c_str());
      has_told = true;
    }
  }
}

}  // namespace

StoreLock::StoreLock(const std::string &path, const Patience &patience) : fd_(open_for_locking(path)) {
  try {
    wait_for_lock(fd_, path, patience);
  } catch (...) {
    close(fd_);
    throw;
  }
}

StoreLock::~StoreLock() { close(fd_); }

}  // namespace mcstore
