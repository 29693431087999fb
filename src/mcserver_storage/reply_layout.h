// What the packed replies of the RAID kinds have in common: a header, whose count tells how many records follow it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "shared/reply_buffer.h"

namespace mcserver {

template <typename Header, typename Record>
struct ReplyLayout {
  static constexpr uint32_t kHeaderSize = sizeof(Header);
  static constexpr uint32_t kRecordSize = sizeof(Record);

  static constexpr uint32_t length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

  static Header *header_of(uint8_t *reply) { return reinterpret_cast<Header *>(reply); }
  static Record *record_at(uint8_t *reply, uint32_t slot) { return reinterpret_cast<Record *>(reply + length(slot)); }

  // The slot behind the records counted so far. With the count, it goes back to the first slot.
  static Record *next_slot(uint8_t *reply) { return record_at(reply, header_of(reply)->count); }

  // How long a reply must be that has the gone devices behind the `reported` ones. All `cached` devices may be gone;
  // they are counted only when the reply is not long enough for that.
  template <typename CountGone>
  static uint32_t length_with_gone(const ReplyBuffer &reply, uint32_t reported, size_t cached, CountGone count_gone) {
    constexpr uint32_t kSlots = std::numeric_limits<decltype(Header::count)>::max() + 1;
    const auto length_with = [&](size_t gone) {
      return length(static_cast<uint32_t>(std::min<size_t>(reported + gone, kSlots)));
    };
    return length_with(cached) <= reply.size() ? length_with(cached) : length_with(count_gone());
  }
};

}  // namespace mcserver
