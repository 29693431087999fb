#include "mcstore/store_copy.h"

#include <fmt/core.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "mcstore/value.h"

namespace mcstore {
namespace {

[[noreturn]] void refuse(const std::string &path, const char *reason) {
  throw Undecodable(fmt::format("Cannot read file '{}': {}", path, reason));
}

}  // namespace

StoreCopy::StoreCopy(const std::string &path, const Kind &kind)
    : path_(path), file_(fopen(path.c_str(), "rb"), fclose), record_(kind.record_size) {
  struct stat about = {};
  if (!file_ || fstat(fileno(file_.get()), &about) != 0) refuse(path_, strerror(errno));

  std::vector<uint8_t> header(total_width(kind.store_header));
  if (!read(header)) refuse(path_, "it ends within its header");
  const auto size = static_cast<uint64_t>(about.st_size);
  size_of_records_ = size - std::min<uint64_t>(size, header.size());
}

std::optional<std::span<const uint8_t>> StoreCopy::next() {
  if (!read(record_)) return {};
  return record_;
}

bool StoreCopy::read(std::span<uint8_t> bytes) {
  if (fread(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size()) return true;
  if (ferror(file_.get())) refuse(path_, strerror(errno));
  return false;
}

}  // namespace mcstore
