// The shared lock under which store files are read.
#pragma once

#include <optional>
#include <string>

namespace mcstore {

// How long to wait for the collector.
struct Patience {
  std::optional<double> seconds = {};  // none: for ever
};

class StoreLock {
 public:
  // Opens the file and locks it. After two seconds it tells on standard error what it waits for. Throws Missing or
  // Unreadable; the latter also when patience ends.
  StoreLock(const std::string &path, const Patience &patience);
  StoreLock(const StoreLock &) = delete;
  StoreLock &operator=(const StoreLock &) = delete;
  ~StoreLock();  // releases it

 private:
  int fd_;
};

}  // namespace mcstore
