// Room for the devices that are gone, behind those that a delta reports.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "shared/reply_buffer.h"

namespace mcserver {

// How long the reply must be. All `cached` devices may be gone; they are counted only when the buffer is not long
// enough for that.
template <typename Layout, typename CountGone>
uint32_t length_with_gone(const ReplyBuffer &reply, uint32_t reported, size_t cached, CountGone count_gone) {
  using Count = decltype(Layout::header_of(nullptr)->count);
  constexpr uint32_t kSlots = std::numeric_limits<Count>::max() + 1;
  const auto length_with = [&](size_t gone) {
    return Layout::length(static_cast<uint32_t>(std::min<size_t>(reported + gone, kSlots)));
  };
  return length_with(cached) <= reply.size() ? length_with(cached) : length_with(count_gone());
}

}  // namespace mcserver
