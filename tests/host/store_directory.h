// A directory that stands for the root of the plug-in's file system.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/bytes.h"

namespace tests {

class StoreDirectory {
 public:
  StoreDirectory();
  StoreDirectory(const StoreDirectory &) = delete;
  StoreDirectory &operator=(const StoreDirectory &) = delete;
  ~StoreDirectory();

  // Where the plug-in's path really leads.
  std::string real(const std::string &path) const { return root_ + path; }

  // Writes a file in place, as the collector does. `modified` is its time stamp, in seconds since 1970.
  void write(const std::string &path, const Bytes &content, int64_t modified = 1000);
  void write_text(const std::string &path, const std::string &text);
  // Makes the file that long, with zeros that take no room on the disk, and sets its time.
  void resize(const std::string &path, uint64_t size, int64_t modified = 1000);

  void remove(const std::string &path);

  // The file's content; empty when there is no such file.
  std::string read(const std::string &path) const;
  bool exists(const std::string &path) const;

  // The file's time stamp, as the file system keeps it.
  int64_t modified(const std::string &path) const;

  // Could a writer take the exclusive lock on this file now?
  bool is_unlocked(const std::string &path) const;

 private:
  std::string root_;
};

}  // namespace tests
