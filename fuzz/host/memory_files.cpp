#include "fuzz/host/memory_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "fuzz/host/require.h"

namespace fuzz {

MemoryFiles::File::File(const char *name)
    : fd(memfd_create(name, MFD_CLOEXEC)), path("/proc/self/fd/" + std::to_string(fd)) {
  require(fd != -1);
}

MemoryFiles::MemoryFiles() : texts_("texts") {}

MemoryFiles::~MemoryFiles() {
  for (const auto &[path, file] : files_) close(file.fd);
  close(texts_.fd);
}

void MemoryFiles::clear() {
  for (auto &[path, file] : files_) file.exists = false;
  require(ftruncate(texts_.fd, 0) == 0);
}

void MemoryFiles::write(const std::string &path, const std::string &content, time_t modified) {
  File &file = files_.try_emplace(path, path.c_str()).first->second;
  const struct timespec times[2] = {{modified, 0}, {modified, 0}};
  require(ftruncate(file.fd, 0) == 0);
  require(pwrite(file.fd, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()));
  require(futimens(file.fd, times) == 0);
  file.exists = true;
}

void MemoryFiles::resize(const std::string &path, size_t size) {
  if (exists(path)) require(ftruncate(files_.at(path).fd, static_cast<off_t>(size)) == 0);
}

void MemoryFiles::remove(const std::string &path) {
  if (exists(path)) files_.at(path).exists = false;
}

bool MemoryFiles::exists(const std::string &path) const {
  const auto file = files_.find(path);
  return file != files_.end() && file->second.exists;
}

bool MemoryFiles::any_is_locked() const {
  return std::ranges::any_of(files_, [](const auto &entry) {
    const int fd = entry.second.fd;
    return flock(fd, LOCK_EX | LOCK_NB) != 0 || flock(fd, LOCK_UN) != 0;
  });
}

const std::string &MemoryFiles::real(const std::string &path) const {
  static const std::string kNothing = "/proc/self/fd/nothing";
  if (path.ends_with(".txt")) return texts_.path;
  return exists(path) ? files_.at(path).path : kNothing;
}

}  // namespace fuzz
