// The files that the plug-in sees. They are in memory, each behind a descriptor, so that nothing waits for a disk.
#pragma once

#include <ctime>
#include <map>
#include <string>

namespace fuzz {

class MemoryFiles {
 public:
  MemoryFiles();
  MemoryFiles(const MemoryFiles &) = delete;
  MemoryFiles &operator=(const MemoryFiles &) = delete;
  ~MemoryFiles();

  void clear();
  void write(const std::string &path, const std::string &content, time_t modified);
  void resize(const std::string &path, size_t size);
  void remove(const std::string &path);

  bool exists(const std::string &path) const;
  // Does anything that the plug-in opened hold a lock on one of the files?
  bool any_is_locked() const;

  // Where the plug-in's path leads: to a file, to nothing, or, for its text files, to one that nobody looks at.
  const std::string &real(const std::string &path) const;

 private:
  // Stays open after the file was removed, to be used again.
  struct File {
    explicit File(const char *name);
    int fd;
    std::string path;
    bool exists = false;
  };

  File texts_;
  std::map<std::string, File> files_;
};

}  // namespace fuzz
