// Where things stand in a physical drive reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"

namespace mcserver::physical_drives {

inline constexpr uint32_t kHeaderSize = sizeof(PhyDriveReplyHeader);
inline constexpr uint32_t kRecordSize = sizeof(StorPhyDriveInfo);
static_assert(kHeaderSize == 20);

constexpr uint32_t reply_length(uint32_t records) { return kHeaderSize + kRecordSize * records; }

inline PhyDriveReplyHeader *header_of(uint8_t *reply) { return reinterpret_cast<PhyDriveReplyHeader *>(reply); }

inline StorPhyDriveInfo *record_at(uint8_t *reply, uint32_t slot) {
  return reinterpret_cast<StorPhyDriveInfo *>(reply + reply_length(slot));
}

// Bytes 12 to 19 stay as the buffer held them. The numbers are written as they are given.
inline void write_header(uint8_t *reply, uint8_t simulated, uint16_t announced, uint16_t count, uint32_t record_size) {
  PhyDriveReplyHeader *header = header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->simulated = simulated;
  header->announced = announced;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::physical_drives
