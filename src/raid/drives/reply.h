// Where things stand in a physical drive reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"
#include "shared/counted_records.h"

namespace mcserver::raid::drives {

using Layout = CountedRecords<PhyDriveReplyHeader, StorPhyDriveInfo>;
static_assert(Layout::kHeaderSize == 20);

// Bytes 12 to 19 stay as the buffer held them. The numbers are written as they are given.
inline void write_header(uint8_t *reply, uint8_t simulated, uint16_t announced, uint16_t count, uint32_t record_size) {
  PhyDriveReplyHeader *header = Layout::header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->simulated = simulated;
  header->announced = announced;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::raid::drives
