#include "race/caller.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace tests {
namespace {

constexpr uint32_t kGuardSize = 4096;
constexpr uint8_t kGuard = 0xC3;

}  // namespace

uint8_t *GuardedBuffer::grow(uint32_t size, uint32_t *available) {
  if (size > size_ && size <= limit_) replace(size);
  *available = size_;
  return bytes_.data();
}

bool GuardedBuffer::is_intact() const {
  return std::all_of(bytes_.begin() + size_, bytes_.end(), [](uint8_t byte) { return byte == kGuard; });
}

void GuardedBuffer::replace(uint32_t size) {
  bytes_.assign(size, kUnwritten);
  bytes_.insert(bytes_.end(), kGuardSize, kGuard);
  size_ = size;
}

Answer Caller::call(const std::string &entry_point, uint32_t size, uint32_t limit) {
  Call call(*this, entry_point, size, limit);
  call.make();
  return call.answer();
}

Caller::Call::Call(Caller &caller, const std::string &entry_point, uint32_t size, uint32_t limit)
    : caller_(caller),
      entry_point_(entry_point),
      function_(caller.plugin_.function<host::EntryPoint>(entry_point)),
      buffer_(size, limit) {}

void Caller::Call::make() {
  const host::PluginScope scope(caller_);
  status_ = function_(static_cast<host::ReplyOwner *>(&buffer_), buffer_.bytes(), buffer_.size(), &length_);
}

Answer Caller::Call::answer() {
  EXPECT_TRUE(buffer_.is_intact()) << entry_point_ << " wrote behind the end of the buffer";
  EXPECT_LE(length_, buffer_.size()) << entry_point_;
  const uint32_t readable = std::min(length_, buffer_.size());
  return {status_, length_, Bytes(std::vector<uint8_t>(buffer_.bytes(), buffer_.bytes() + readable))};
}

std::vector<std::string> Caller::system_log() { return std::exchange(system_log_, {}); }

std::optional<std::string> Caller::resolve(const char *, const std::string &path) { return files_.real(path); }

void Caller::log(int, const std::string &line) { system_log_.push_back(line); }

long open_descriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

}  // namespace tests
