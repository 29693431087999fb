// The host's reply buffer: how large it is known to be, and how it grows.
#pragma once

#include <cstdint>

namespace mcserver {

class ReplyBuffer {
 public:
  ReplyBuffer(void *ctx, uint8_t *bytes, uint32_t size) : ctx_(ctx), bytes_(bytes), size_(size) {}

  uint8_t *bytes() const { return bytes_; }
  uint32_t size() const { return size_; }

  // Asks the host for a buffer of `size` bytes, whose content need not be the old one's. False when the host refuses:
  // then there is nothing to write to. A host that leaves the size variable alone has granted what was asked.
  bool grow(uint32_t size);

  // The same, but a host that leaves the size variable alone has refused.
  bool grow_if_confirmed(uint32_t size);

  // The same, but what the buffer holds is still there afterwards, wherever the host moved it. No memory for keeping
  // it counts as a refusal.
  bool grow_and_keep(uint32_t size);

 private:
  bool request(uint32_t size, uint32_t available);

  void *ctx_;
  uint8_t *bytes_;
  uint32_t size_;
};

}  // namespace mcserver
