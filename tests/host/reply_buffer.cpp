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

HostReplyBuffer::HostReplyBuffer(uint32_t size, std::vector<Growth> growth, uint32_t most)
    : growth_(std::move(growth)), most_(most) {
  replace(size, kUntouched);
}

uint8_t *HostReplyBuffer::grow(uint32_t size, uint32_t *available) {
  const Growth growth = size > most_ ? Growth::kRefuse : growth_[std::min(requests_.size(), growth_.size() - 1)];
  requests_.push_back(size);
  switch (growth) {
    case Growth::kInPlace:
      grow_in_place(size);
      break;
    case Growth::kMove:
      replace(size, kUntouchedAfterGrowth);
      break;
    case Growth::kRefuse:
      break;
    case Growth::kGrantLess:
      replace(size - 1, kUntouchedAfterGrowth);
      break;
    case Growth::kNull:
      *available = size;
      return nullptr;
    case Growth::kSayNothing:
      replace(size, kUntouchedAfterGrowth);
      return current_;
  }
  *available = size_;
  return current_;
}

void HostReplyBuffer::replace(uint32_t size, uint8_t fill) {
  const uint32_t room = std::max(size, kRoomInPlace);
  block_.reset(new uint8_t[room]);
  current_ = block_.get();
  size_ = size;
  memset(current_, fill, size);
  ASAN_POISON_MEMORY_REGION(current_ + size, room - size);
}

void HostReplyBuffer::grow_in_place(uint32_t size) {
  if (size <= size_) return;  // a request may be for less than there is
  if (size > kRoomInPlace) throw std::logic_error("a buffer of this size can only move");
  ASAN_UNPOISON_MEMORY_REGION(current_, size);
  memset(current_ + size_, kUntouchedAfterGrowth, size - size_);
  size_ = size;
}

}  // namespace tests
