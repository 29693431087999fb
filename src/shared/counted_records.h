// Memory that begins with a header, whose count tells how many records follow it: packed replies, and what they and
// others are made of.
#pragma once

#include <cstdint>

namespace mcserver {

template <typename Header, typename Record>
struct CountedRecords {
  static constexpr uint32_t kHeaderSize = sizeof(Header);
  static constexpr uint32_t kRecordSize = sizeof(Record);

  static constexpr uint32_t length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

  static Header *header_of(uint8_t *memory) { return reinterpret_cast<Header *>(memory); }
  static Record *record_at(uint8_t *memory, uint32_t slot) { return reinterpret_cast<Record *>(memory + length(slot)); }

  // The slot behind the records counted so far. When the count wraps, so do the slots.
  static Record *next_slot(uint8_t *memory) { return record_at(memory, header_of(memory)->count); }

  // Counts one record more, and gives its slot.
  static Record *append(uint8_t *memory) { return record_at(memory, header_of(memory)->count++); }
};

}  // namespace mcserver
