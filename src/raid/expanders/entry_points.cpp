// What the host calls for SAS expanders. No collector describes them: there is only the reply of a simulation.

#include <cstring>

#include "mcserver_storage.h"
#include "raid/entry_point.h"
#include "raid/simulation.h"
#include "shared/exported.h"
#include "shared/reply_buffer.h"

namespace mcserver::raid::expanders {
namespace {

// A header of 16 bytes, whose last eight are not written, and the beginning of one record of 84.
constexpr uint32_t kReplyLength = 100;
constexpr uint8_t kHeader[] = {0x00, 0x00, 0x01, 0x54, 0x00, 0x00, 0x00, 0x00};
constexpr size_t kRecordOffset = 16;
constexpr uint8_t kRecord[] = {0x01, 0x05, 0x02, 0x32, 0x65, 0x14, 0x05, 0x00,
                               0x65, 0x64, 0x63, 0x62, 0xFF, 0xFE, 0xFD, 0xFC};

int32_t simulate(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_simulation("mc_get_store_sasexpanders", 2780, reply, kReplyLength, len))
    return MC_STORE_REPLY_TOO_LARGE;
  memcpy(reply.bytes(), kHeader, sizeof kHeader);
  memcpy(reply.bytes() + kRecordOffset, kRecord, sizeof kRecord);
  return MC_STORE_SUCCESS;
}

int32_t retrieve(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t) {
  return get_store_sasexpanders(ctx, buf, bufsize, len);
}

}  // namespace

EXPORTED int32_t get_store_sasexpanders(void *, uint8_t *, uint32_t, uint32_t *len) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  *len = 0;
  return MC_STORE_NO_DATA;
}

// Unlike the other kinds' full call, this one clears the length even without a buffer.
EXPORTED int32_t mc_get_store_sasexpanders(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  if (len) *len = 0;
  return get_full({"mc_get_store_sasexpanders", 2764}, retrieve, simulate, ctx, buf, bufsize, len);
}

EXPORTED int32_t mc_delta_store_sasexpanders(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
  return get_delta({"mc_delta_store_sasexpanders", 2826}, retrieve, ctx, buf, bufsize, len);
}

}  // namespace mcserver::raid::expanders
