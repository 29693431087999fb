#include "mcstore/source/store_lock.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

#include "mcstore/kinds/printable.h"
#include "mcstore/source/failure.h"

namespace mcstore {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr Seconds kSilent{2};
constexpr std::chrono::milliseconds kPause{20};

int open_for_locking(const std::string &path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // a pipe must not keep it waiting
  if (fd == -1 && errno == ENOENT)
    throw Missing(fmt::format("{} does not exist, which is to be locked: the collector makes it", path));
  if (fd == -1) throw Unreadable(fmt::format("cannot open {}: {}", path, strerror(errno)));
  struct stat about = {};
  if (fstat(fd, &about) == 0 && S_ISREG(about.st_mode)) return fd;
  close(fd);
  throw Unreadable(fmt::format("{}, which is to be locked, is not a file", path));
}

// Is the lock held now? False as long as somebody else holds it exclusively.
bool try_lock(int fd, const std::string &path) {
  if (flock(fd, LOCK_SH | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK && errno != EINTR)
    throw Unreadable(fmt::format("cannot lock {}: {}", path, strerror(errno)));
  return false;
}

void wait_for_lock(int fd, const std::string &path, Patience &patience) {
  const bool was_in_vain = patience.given_up.contains(path);
  const Clock::time_point start = Clock::now();
  for (bool has_told = false; !try_lock(fd, path); std::this_thread::sleep_for(kPause)) {
    const Seconds waited = Clock::now() - start;
    if (patience.seconds && (was_in_vain || waited.count() >= *patience.seconds)) {
      patience.given_up.insert(path);
      throw Unreadable(fmt::format("{} stayed locked by another process for {} s", path, *patience.seconds));
    }
    if (!has_told && waited >= kSilent) {
      const std::string message = fmt::format("waiting for the lock on {}, which another process holds", path);
      fprintf(stderr, "mcstore: %s\n", printable(message).c_str());
      has_told = true;
    }
  }
  patience.given_up.erase(path);
}

}  // namespace

StoreLock::StoreLock(const std::string &path, Patience &patience) : fd_(open_for_locking(path)) {
  try {
    wait_for_lock(fd_, path, patience);
  } catch (...) {
    close(fd_);
    throw;
  }
}

StoreLock::~StoreLock() { close(fd_); }

}  // namespace mcstore
