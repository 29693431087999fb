#include "mcstore/source/whole_file.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "mcstore/source/descriptor.h"
#include "mcstore/source/failure.h"

namespace mcstore {
namespace {

// 65,535 records of the largest kind.
constexpr off_t kLargest = off_t{256} << 20;

[[noreturn]] void refuse_reading(const std::string &path, const std::string &reason) {
  throw Unreadable(fmt::format("cannot read {}: {}", path, reason));
}

}  // namespace

WholeFile read_whole(const std::string &path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));  // a pipe must not keep it waiting
  if (!file.is_open() && errno == ENOENT) throw Missing(fmt::format("{} does not exist", path));
  struct stat about = {};
  if (!file.is_open() || fstat(file.number(), &about) != 0) refuse_reading(path, strerror(errno));
  if (!S_ISREG(about.st_mode)) refuse_reading(path, "it is not a file");
  if (about.st_size > kLargest) refuse_reading(path, fmt::format("it is larger than {} MiB", kLargest >> 20));

  WholeFile whole{.bytes = std::vector<uint8_t>(static_cast<size_t>(about.st_size)), .modified = about.st_mtim};
  size_t done = 0;
  while (done < whole.bytes.size()) {
    const ssize_t count = read(file.number(), whole.bytes.data() + done, whole.bytes.size() - done);
    if (count == -1) refuse_reading(path, strerror(errno));
    if (count == 0) refuse_reading(path, "it became shorter meanwhile");
    done += static_cast<size_t>(count);
  }
  return whole;
}

}  // namespace mcstore
