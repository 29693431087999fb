#include "mcstore/capture/new_directory.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "mcstore/source/descriptor.h"

namespace mcstore {
namespace {

[[noreturn]] void give_up(const std::string &what) { throw std::system_error(errno, std::generic_category(), what); }

bool write_all(const Descriptor &file, std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.number(), bytes.data(), bytes.size());
    if (count == -1) return false;
    bytes = bytes.subspan(static_cast<size_t>(count));
  }
  return true;
}

bool set_time(const Descriptor &file, const struct timespec &modified) {
  const struct timespec times[2] = {modified, modified};
  return futimens(file.number(), times) == 0;
}

bool sync_directory(const std::string &path) {
  const Descriptor directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return directory.is_open() && fsync(directory.number()) == 0;
}

std::string parent_of(const std::string &path) {
  const std::string parent = std::filesystem::path(path).parent_path();
  return parent.empty() ? "." : parent;
}

sigset_t hold_signals() {
  sigset_t held;
  sigemptyset(&held);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&held, number);
  sigset_t before;
  sigprocmask(SIG_BLOCK, &held, &before);
  return before;
}

}  // namespace

NewDirectory::NewDirectory(const std::string &path)
    : signals_before_(hold_signals()),
      path_(path.substr(0, path.find_last_not_of('/') + 1)),
      temporary_(fmt::format("{}.partial-{}", path_, getpid())) {
  if (mkdir(temporary_.c_str(), 0777) == 0) return;
  const int error = errno;
  sigprocmask(SIG_SETMASK, &signals_before_, nullptr);
  errno = error;
  give_up("cannot make " + temporary_);
}

NewDirectory::~NewDirectory() {
  std::error_code ignored;
  if (!temporary_.empty()) std::filesystem::remove_all(temporary_, ignored);
  sigprocmask(SIG_SETMASK, &signals_before_, nullptr);
}

void NewDirectory::write(const std::string &path, std::span<const uint8_t> bytes, const struct timespec &modified) {
  const std::string real = temporary_ + path;
  make_directories(parent_of(real));
  const Descriptor file(open(real.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.is_open() || !write_all(file, bytes) || !set_time(file, modified) || fsync(file.number()) != 0)
    give_up("cannot write " + path_ + path);
}

void NewDirectory::finish() {
  directories_.insert(temporary_);
  for (const std::string &directory : directories_)
    if (!sync_directory(directory)) give_up("cannot write " + directory);
  if (rename(temporary_.c_str(), path_.c_str()) != 0) give_up(fmt::format("cannot rename {} to {}", temporary_, path_));
  temporary_.clear();
  sync_directory(parent_of(path_));  // it is there, whether or not this can be
}

void NewDirectory::make_directories(const std::string &path) {
  if (path == temporary_ || !directories_.insert(path).second) return;
  make_directories(parent_of(path));
  if (mkdir(path.c_str(), 0777) != 0) give_up("cannot make " + path);
}

}  // namespace mcstore
