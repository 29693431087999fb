// The shared lock under which store files are read.
#pragma once

#include <optional>
#include <set>
#include <string>

namespace mcstore {

// How long to wait for the collector, and what has come of that: who reads one kind after the other is to wait once for
// each lock, and to be told once.
struct Patience {
  std::optional<double> seconds = {};   // none: for ever
  std::set<std::string> given_up = {};  // locks for which it was not enough, until they are free again
};

class StoreLock {
 public:
  // Opens the file and locks it. After two seconds it tells on standard error what it waits for. Throws Missing or
  // Unreadable; the latter also when patience ends.
  StoreLock(const std::string &path, Patience &patience);
  StoreLock(const StoreLock &) = delete;
  StoreLock &operator=(const StoreLock &) = delete;
  ~StoreLock();  // releases it

 private:
  int fd_;
};

}  // namespace mcstore
