// Where things stand in a controller reply.
#pragma once

#include <cstdint>
#include <cstring>

#include "mcserver_storage.h"
#include "shared/counted_records.h"

namespace mcserver::raid::controllers {

using Layout = CountedRecords<StoreReplyHeader, StorCtlrInfo>;
static_assert(Layout::kHeaderSize == 18);

// Bytes 10 to 17 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t state, uint8_t count, uint32_t record_size) {
  StoreReplyHeader *header = Layout::header_of(reply);
  header->type = 0x28;
  memset(header->zero_1, 0, sizeof header->zero_1);
  header->state = state;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::raid::controllers
