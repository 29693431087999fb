// Where things stand in a virtual drive reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"

namespace mcserver::virtual_drives {

inline constexpr uint32_t kHeaderSize = sizeof(VirtDriveReplyHeader);
inline constexpr uint32_t kRecordSize = sizeof(StorVirtDriveInfo);
static_assert(kHeaderSize == 17);

constexpr uint32_t reply_length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

inline VirtDriveReplyHeader *header_of(uint8_t *reply) { return reinterpret_cast<VirtDriveReplyHeader *>(reply); }

inline StorVirtDriveInfo *record_at(uint8_t *reply, uint32_t slot) {
  return reinterpret_cast<StorVirtDriveInfo *>(reply + reply_length(slot));
}

// The slot behind the records counted so far. The count has 8 bits, so the 257th record lies in slot 0 again.
inline StorVirtDriveInfo *next_slot(uint8_t *reply) { return record_at(reply, header_of(reply)->count); }

// Bytes 9 to 16 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t count, uint32_t record_size) {
  VirtDriveReplyHeader *header = header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->eight = 8;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::virtual_drives
