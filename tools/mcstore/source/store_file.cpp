#include "mcstore/source/store_file.h"

#include <fcntl.h>
#include <fmt/core.h>

#include <cerrno>
#include <cstring>

#include "mcstore/source/failure.h"

namespace mcstore {
namespace {

[[noreturn]] void refuse(const std::string &path, const char *reason) {
  throw Unreadable(fmt::format("cannot read {}: {}", path, reason));
}

// Not as a pipe, which would keep its reader waiting.
FILE *open_store(const std::string &path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  return fd == -1 ? nullptr : fdopen(fd, "rb");
}

}  // namespace

StoreFile::StoreFile(const std::string &path, const Kind &kind)
    : kind_(kind),
      path_(path),
      file_(open_store(path), fclose),
      header_(total_width(kind.store_header)),
      record_(kind.record_size) {
  if (!file_ && errno == ENOENT) throw Missing(fmt::format("{} does not exist", path));
  if (!file_ || fstat(fileno(file_.get()), &about_) != 0) refuse(path_, strerror(errno));
  if (!S_ISREG(about_.st_mode)) refuse(path_, "it is not a file");
  has_header_ = size() >= header_.size() && read(header_);
}

std::optional<Record> StoreFile::next() {
  if (!read(record_)) return {};
  return record_;
}

std::optional<uint64_t> StoreFile::in_header(const std::optional<Field> &field) const {
  if (!field || !has_header_) return {};
  return raw_number(header_, *field);
}

bool StoreFile::read(std::vector<uint8_t> &bytes) {
  if (fread(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size()) return true;
  if (ferror(file_.get())) refuse(path_, strerror(errno));
  return false;
}

}  // namespace mcstore
