// Where things stand in a virtual drive reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"
#include "shared/counted_records.h"

namespace mcserver::raid::virtual_drives {

using Layout = CountedRecords<VirtDriveReplyHeader, StorVirtDriveInfo>;
static_assert(Layout::kHeaderSize == 17);

// Bytes 9 to 16 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t count, uint32_t record_size) {
  VirtDriveReplyHeader *header = Layout::header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->eight = 8;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::raid::virtual_drives
