#include "host/reply_buffer.h"

#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace tests {
namespace {

// A buffer can grow in place up to this size. What lies beyond its current size is poisoned for the sanitizer.
constexpr uint32_t kRoomInPlace = 1u << 20;

}  // namespace

void PrintTo(Growth growth, std::ostream *out) {
  constexpr const char *kNames[] = {"in place", "move", "refuse", "grant less", "null", "say nothing"};
  *out << kNames[static_cast<size_t>(growth)];
}

HostReplyBuffer::HostReplyBuffer(uint32_t size, std::vector<Growth> growth)
    : growth_(std::move(growth)),
      block_(new uint8_t[std::max(size, kRoomInPlace)]),
      current_(block_.get()),
      size_(size) {
  memset(current_, kUntouched, size);
  ASAN_POISON_MEMORY_REGION(current_ + size, std::max(size, kRoomInPlace) - size);
}

uint8_t *HostReplyBuffer::grow(uint32_t size, uint32_t *available) {
  const Growth growth = growth_[std::min(requests_.size(), growth_.size() - 1)];
  requests_.push_back(size);
  switch (growth) {
    case Growth::kInPlace:
      grow_in_place(size);
      break;
    case Growth::kMove:
      replace(size);
      break;
    case Growth::kRefuse:
      break;
    case Growth::kGrantLess:
      replace(size - 1);
      break;
    case Growth::kNull:
      *available = size;
      return nullptr;
    case Growth::kSayNothing:
      replace(size);
      return current_;
  }
  *available = size_;
  return current_;
}

void HostReplyBuffer::replace(uint32_t size) {
  block_.reset(new uint8_t[size]);
  current_ = block_.get();
  size_ = size;
  memset(current_, kUntouchedAfterGrowth, size);
}

void HostReplyBuffer::grow_in_place(uint32_t size) {
  if (size <= size_) return;  // a request may be for less than there is
  if (size > kRoomInPlace) throw std::logic_error("a buffer of this size can only move");
  ASAN_UNPOISON_MEMORY_REGION(current_, size);
  memset(current_ + size_, kUntouchedAfterGrowth, size - size_);
  size_ = size;
}

}  // namespace tests
