#include "host/store_directory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tests {
namespace {

void set_time(const std::string &file, int64_t modified) {
  struct timespec times[2] = {};
  times[0].tv_sec = times[1].tv_sec = static_cast<time_t>(modified);
  if (utimensat(AT_FDCWD, file.c_str(), times, 0) != 0) throw std::runtime_error("cannot set the time of " + file);
}

}  // namespace

StoreDirectory::StoreDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "mcserver_storage.XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot make a directory for the test");
  root_ = pattern;
}

StoreDirectory::~StoreDirectory() { std::filesystem::remove_all(root_); }

void StoreDirectory::write(const std::string &path, const Bytes &content, int64_t modified) {
  write_text(path, std::string(content.data(), content.data() + content.size()));
  set_time(real(path), modified);
}

void StoreDirectory::resize(const std::string &path, uint64_t size, int64_t modified) {
  if (truncate(real(path).c_str(), static_cast<off_t>(size)) != 0)
    throw std::runtime_error("cannot set the size of " + path);
  set_time(real(path), modified);
}

void StoreDirectory::write_text(const std::string &path, const std::string &text) {
  std::ofstream file(real(path), std::ios::binary);
  if (!file) {
    std::filesystem::create_directories(std::filesystem::path(real(path)).parent_path());
    file.open(real(path), std::ios::binary);
  }
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

void StoreDirectory::remove(const std::string &path) { std::filesystem::remove_all(real(path)); }

std::string StoreDirectory::read(const std::string &path) const {
  std::ostringstream content;
  const std::ifstream file(real(path), std::ios::binary);
  if (file) content << file.rdbuf();
  return content.str();
}

bool StoreDirectory::exists(const std::string &path) const { return std::filesystem::exists(real(path)); }

int64_t StoreDirectory::modified(const std::string &path) const {
  struct stat about;
  if (stat(real(path).c_str(), &about) != 0) throw std::runtime_error("cannot look at " + path);
  return about.st_mtime;
}

bool StoreDirectory::is_unlocked(const std::string &path) const {
  const int fd = open(real(path).c_str(), O_RDONLY | O_CLOEXEC);
  if (fd == -1) return true;  // nothing there to be locked
  const bool unlocked = flock(fd, LOCK_EX | LOCK_NB) == 0;
  close(fd);
  return unlocked;
}

}  // namespace tests
