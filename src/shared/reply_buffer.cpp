#include "shared/reply_buffer.h"

#include <cstdlib>
#include <cstring>

#include "mcserver_storage.h"
#include "shared/owned_memory.h"

namespace mcserver {

bool ReplyBuffer::grow(uint32_t size) { return request(size, size); }

bool ReplyBuffer::grow_if_confirmed(uint32_t size) { return request(size, size_); }

bool ReplyBuffer::request(uint32_t size, uint32_t available) {
  bytes_ = mc_grow_attribute_buffer(ctx_, size, &available);
  size_ = available;
  return bytes_ && size_ >= size;
}

// All of it is kept, not only what was written: bytes that stay unwritten show through in the reply.
bool ReplyBuffer::grow_and_keep(uint32_t size) {
  const uint32_t kept_size = size_;
  const OwnedMemory kept(malloc(kept_size));
  if (!kept) return false;

  memcpy(kept.bytes(), bytes_, kept_size);
  if (!grow(size)) return false;
  memcpy(bytes_, kept.bytes(), kept_size);
  return true;
}

}  // namespace mcserver
