#include "mcstore/collect/collector.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "mcstore/source/directories.h"

namespace mcstore {
namespace {

[[noreturn]] void fail(const std::string &what) { throw std::system_error(errno, std::generic_category(), what); }

// A file that is opened for rewriting. Not truncated: until it is locked, a reader may be in it.
class OpenFile {
 public:
  explicit OpenFile(const std::string &path) : path_(path) {
    make_directories(std::filesystem::path(path).parent_path());
    fd_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd_ == -1) fail("cannot open " + path_);
  }
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;
  ~OpenFile() { close(fd_); }  // releases the lock as well

  void lock() {
    if (flock(fd_, LOCK_EX) == -1) fail("cannot lock " + path_);
  }

  void replace(const std::vector<uint8_t> &content, std::optional<time_t> modified) {
    write_all(content);
    if (ftruncate(fd_, static_cast<off_t>(content.size())) == -1) fail("cannot set the size of " + path_);
    if (!modified) return;
    struct timespec times[2] = {};
    times[0].tv_sec = times[1].tv_sec = *modified;
    if (futimens(fd_, times) == -1) fail("cannot set the time of " + path_);
  }

 private:
  void write_all(const std::vector<uint8_t> &content) {
    // Space first, so that a full disk leaves the old content whole.
    const auto size = static_cast<off_t>(content.size());
    if (const int error = size > 0 ? posix_fallocate(fd_, 0, size) : 0; error != 0) {
      errno = error;
      fail("no space for " + path_);
    }
    for (size_t written = 0; written < content.size();) {
      const ssize_t count =
          pwrite(fd_, content.data() + written, content.size() - written, static_cast<off_t>(written));
      if (count == -1) fail("cannot write " + path_);
      written += static_cast<size_t>(count);
    }
  }

  std::string path_;
  int fd_;
};

// "+01:30" as seconds; nothing if it is not an offset.
std::optional<time_t> parse_offset(const std::string &text) {
  if (text.empty() || text == "Z") return 0;
  int hours = 0;
  int minutes = 0;
  char sign = 0;
  int length = 0;
  const bool is_offset = sscanf(text.c_str(), "%c%2d:%2d%n", &sign, &hours, &minutes, &length) == 3 &&
                         static_cast<size_t>(length) == text.size() && (sign == '+' || sign == '-');
  if (!is_offset) return {};
  const time_t seconds = 3600 * time_t{hours} + 60 * time_t{minutes};
  return sign == '-' ? -seconds : seconds;
}

bool is_anything_at(const std::string &path) {
  struct stat about = {};
  return lstat(path.c_str(), &about) == 0;
}

// Seconds since 1970 of a date in UTC; nothing for one that the calendar does not have, such as 31 February.
std::optional<time_t> seconds_of(const struct tm &fields) {
  struct tm real = fields;
  const time_t seconds = timegm(&real);
  if (real.tm_mday != fields.tm_mday || real.tm_sec != fields.tm_sec) return {};
  return seconds;
}

}  // namespace

void write_stores(const std::vector<StoreContent> &stores, const std::string &root, std::optional<time_t> modified) {
  for (const StoreContent &store : stores) {
    if (store.only_if_missing && is_anything_at(root + std::string(store.path))) continue;
    OpenFile lock(root + std::string(store.lock_path));
    lock.lock();
    if (store.path == store.lock_path)
      lock.replace(store.bytes, modified);
    else
      OpenFile(root + std::string(store.path)).replace(store.bytes, modified);
  }
}

std::optional<time_t> parse_time(const std::string &text) {
  long long seconds = 0;
  const char *const end = text.data() + text.size();
  if (const auto result = std::from_chars(text.data(), end, seconds); result.ptr == end && result.ec == std::errc())
    return static_cast<time_t>(seconds);

  for (const char *format : {"%Y-%m-%dT%H:%M:%S", "%Y-%m-%dT%H:%M", "%Y-%m-%d"}) {
    struct tm fields = {};
    const char *rest = strptime(text.c_str(), format, &fields);
    const std::optional<time_t> offset = rest ? parse_offset(rest) : std::nullopt;
    const std::optional<time_t> seconds_there = offset ? seconds_of(fields) : std::nullopt;
    if (seconds_there) return *seconds_there - *offset;
  }
  return {};
}

}  // namespace mcstore
