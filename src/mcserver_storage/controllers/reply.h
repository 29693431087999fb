// Where things stand in a controller reply.
#pragma once

#include <cstdint>
#include <cstring>

#include "mcserver_storage.h"

namespace mcserver::controllers {

inline constexpr uint32_t kHeaderSize = sizeof(StoreReplyHeader);
inline constexpr uint32_t kRecordSize = sizeof(StorCtlrInfo);
static_assert(kHeaderSize == 18);

constexpr uint32_t reply_length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

inline StoreReplyHeader *header_of(uint8_t *reply) { return reinterpret_cast<StoreReplyHeader *>(reply); }

inline StorCtlrInfo *record_at(uint8_t *reply, uint32_t slot) {
  return reinterpret_cast<StorCtlrInfo *>(reply + reply_length(slot));
}

// The slot behind the records counted so far. The count has 8 bits, so the 257th record lies in slot 0 again.
inline StorCtlrInfo *next_slot(uint8_t *reply) { return record_at(reply, header_of(reply)->count); }

// Bytes 10 to 17 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t state, uint8_t count, uint32_t record_size) {
  StoreReplyHeader *header = header_of(reply);
  header->type = 0x28;
  memset(header->zero_1, 0, sizeof header->zero_1);
  header->state = state;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::controllers
