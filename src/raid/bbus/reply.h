// Where things stand in a BBU reply.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"
#include "shared/counted_records.h"

namespace mcserver::raid::bbus {

using Layout = CountedRecords<BbuReplyHeader, StorBbuInfo>;
static_assert(Layout::kHeaderSize == 17);

// Bytes 9 to 16 stay as the buffer held them. `record_size` is written as it is given.
inline void write_header(uint8_t *reply, uint8_t simulated, uint8_t count, uint32_t record_size) {
  BbuReplyHeader *header = Layout::header_of(reply);
  header->type = 0x28;
  header->zero_1 = 0;
  header->simulated = simulated;
  header->count = count;
  header->record_size = record_size;
  header->zero_2 = 0;
}

}  // namespace mcserver::raid::bbus
