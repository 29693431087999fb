// A directory that comes into being with all that it holds, or not at all.
#pragma once

#include <csignal>
#include <cstdint>
#include <ctime>
#include <set>
#include <span>
#include <string>

namespace mcstore {

class NewDirectory {
 public:
  // Nothing may be at `path`. As long as the object lives, signals that would end the program wait. Throws
  // std::system_error, like all functions of this class.
  explicit NewDirectory(const std::string &path);
  NewDirectory(const NewDirectory &) = delete;
  NewDirectory &operator=(const NewDirectory &) = delete;
  ~NewDirectory();  // without finish(), nothing is left

  // Writes a file to the disk. `path` begins with a slash, which stands for the directory.
  void write(const std::string &path, std::span<const uint8_t> bytes, const struct timespec &modified);

  // Gives the directory its name, when everything is on the disk.
  void finish();

 private:
  void make_directories(const std::string &path);

  sigset_t signals_before_;
  std::string path_;
  std::string temporary_;  // beside it; empty when there is none any more
  std::set<std::string> directories_ = {};
};

}  // namespace mcstore
