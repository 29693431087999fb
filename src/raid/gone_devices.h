// Room for the devices that are gone, behind those that a delta reports.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "shared/reply_buffer.h"

namespace mcserver::raid {

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

// Makes room for the gone devices behind the `reported` ones: the first request did not cover them, and without room
// they would run past the host's buffer. False when the host refuses; `refuse` tells of the length that was needed.
template <typename Layout, typename CountGone, typename Refuse>
bool make_room_for_gone(ReplyBuffer &reply, uint32_t reported, size_t cached, CountGone count_gone, Refuse refuse) {
  const uint32_t needed = length_with_gone<Layout>(reply, reported, cached, count_gone);
  if (needed <= reply.size() || reply.grow_and_keep(needed)) return true;
  return refuse(needed);
}

}  // namespace mcserver::raid
