// Limits on what the system grants this process.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace tests {

// A limit on one of its resources, for as long as this object lives.
class Limit {
 public:
  using Resource = decltype(RLIMIT_AS);

  Limit(Resource resource, rlim_t most) : resource_(resource) {
    getrlimit(resource_, &previous_);
    const struct rlimit limited = {.rlim_cur = std::min(most, previous_.rlim_max), .rlim_max = previous_.rlim_max};
    setrlimit(resource_, &limited);
  }
  Limit(const Limit &) = delete;
  Limit &operator=(const Limit &) = delete;
  ~Limit() { setrlimit(resource_, &previous_); }

 private:
  Resource resource_;
  struct rlimit previous_;
};

// Found out without taking any more.
inline rlim_t address_space_in_use() {
  char pages[32] = {};
  const int statm = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  const ssize_t length = read(statm, pages, sizeof pages - 1);
  close(statm);
  return length > 0 ? strtoull(pages, nullptr, 10) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) : 0;
}

}  // namespace tests
