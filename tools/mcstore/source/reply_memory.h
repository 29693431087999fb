// The reply buffer of this host. It grows without ever moving, because a simulated reply is written to the address
// that the plug-in was first given.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/host_symbols.h"

namespace mcstore {

class ReplyMemory : public host::ReplyOwner {
 public:
  // As far as the buffer can grow: address space, which takes memory only where it is written.
  static constexpr uint32_t kLargest = sizeof(void *) == 8 ? 1u << 30 : 1u << 28;

  // Throws std::runtime_error when there is no address space left.
  explicit ReplyMemory(uint32_t size);
  ReplyMemory(const ReplyMemory &) = delete;
  ReplyMemory &operator=(const ReplyMemory &) = delete;
  ~ReplyMemory() override;

  uint8_t *grow(uint32_t size, uint32_t *available) override;

  // Makes it the first size again, all zero: what a reply leaves unwritten is not to show an older one.
  void clear();

  uint8_t *bytes() const { return bytes_; }
  uint32_t size() const { return size_; }

 private:
  uint8_t *bytes_;
  uint32_t first_size_;
  uint32_t size_;
};

}  // namespace mcstore
