#include "mcstore/source/store_watch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "mcstore/kinds/kind.h"

namespace mcstore {
namespace {

using Clock = StoreWatch::Clock;
using Milliseconds = std::chrono::milliseconds;

constexpr uint32_t kWrites = IN_CLOSE_WRITE | IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr uint32_t kDirectoryIsGone = IN_DELETE_SELF | IN_MOVE_SELF;

// A burst of writes is over when nothing follows for a moment; it is not waited for longer than two writes of one
// second are apart.
constexpr Milliseconds kQuiet{20};
constexpr Milliseconds kLongestBurst{100};

// Rounded up, so that what is waited for has come.
int milliseconds_until(Clock::time_point time) {
  const auto rest = std::chrono::ceil<Milliseconds>(time - Clock::now());
  constexpr Milliseconds kLongest{86'400'000};
  return static_cast<int>(std::clamp(rest, Milliseconds(0), kLongest).count());
}

}  // namespace

StoreWatch::StoreWatch(const Place &place) : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  for (const Kind &kind : kinds()) {
    if (kind.store_path.empty()) continue;
    const std::filesystem::path path = place.real(kind.store_path);
    names_.insert(path.filename());
    directories_.insert(path.parent_path());
  }
}

void StoreWatch::renew() {
  for (const std::string &directory : directories_)
    inotify_add_watch(events_.number(), directory.c_str(), kWrites | kDirectoryIsGone);
}

Woken StoreWatch::wait_until(Clock::time_point time) {
  std::array<struct pollfd, 2> waiting = {
      {{.fd = events_.number(), .events = POLLIN, .revents = 0}, {.fd = STDOUT_FILENO, .events = 0, .revents = 0}}};
  while (Clock::now() < time) {
    if (poll(waiting.data(), waiting.size(), milliseconds_until(time)) == -1) continue;
    if (waiting[1].revents != 0) return Woken::kByHangup;
    if (!take_events()) continue;
    settle();
    return Woken::kByWrite;
  }
  return Woken::kByTime;
}

void StoreWatch::settle() {
  const Clock::time_point latest = Clock::now() + kLongestBurst;
  struct pollfd events = {.fd = events_.number(), .events = POLLIN, .revents = 0};
  while (Clock::now() < latest && poll(&events, 1, kQuiet.count()) == 1) take_events();
}

// Takes what has been told. Was any of it about store files, or about their directory?
bool StoreWatch::take_events() {
  alignas(struct inotify_event) std::array<char, 4096> buffer;
  bool is_concerned = false;
  for (ssize_t size = read(events_.number(), buffer.data(), buffer.size()); size > 0;
       size = read(events_.number(), buffer.data(), buffer.size())) {
    for (size_t at = 0; at < static_cast<size_t>(size);) {
      struct inotify_event event;
      memcpy(&event, &buffer[at], sizeof event);
      const std::string_view name = event.len == 0 ? "" : &buffer[at + sizeof event];
      is_concerned |= name.empty() || names_.contains(name);
      at += sizeof event + event.len;
    }
  }
  return is_concerned;
}

}  // namespace mcstore
