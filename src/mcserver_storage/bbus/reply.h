// Where things stand in a BBU reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"

namespace mcserver::bbus {

inline constexpr uint32_t kHeaderSize = sizeof(BbuReplyHeader);
inline constexpr uint32_t kRecordSize = sizeof(StorBbuInfo);
static_assert(kHeaderSize == 17);

constexpr uint32_t reply_length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

inline BbuReplyHeader *header_of(uint8_t *reply) { return reinterpret_cast<BbuReplyHeader *>(reply); }

inline StorBbuInfo *record_at(uint8_t *reply, uint32_t slot) {
  return reinterpret_cast<StorBbuInfo *>(reply + reply_length(slot));
}

// The slot behind the records counted so far. The count has 8 bits, so the 257th record lies in slot 0 again.
inline StorBbuInfo *next_slot(uint8_t *reply) { return record_at(reply, header_of(reply)->count); }

// Bytes 9 to 16 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t simulated, uint8_t count, uint32_t record_size) {
  BbuReplyHeader *header = header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->simulated = simulated;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::bbus
