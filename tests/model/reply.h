// The host's buffer, as an entry point sees it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "host/reply_buffer.h"
#include "model/choices.h"

namespace model {

struct Reply {
  tests::HostReplyBuffer &host;
  uint8_t *bytes = host.bytes();
  uint32_t size = host.size();

  // Asks the host. False when it refuses or returns null; `bytes` and `size` are what it left. A host that leaves the
  // size variable alone says what it had before: `silent`.
  bool grow(uint32_t needed, uint32_t silent) {
    uint32_t available = silent;
    uint8_t *const grown = host.grow(needed, &available);
    if (grown) bytes = grown;
    size = available;
    return grown && needed <= available;
  }

  void put(size_t offset, const Bytes &content) {
    if (offset + content.size() > host.size()) throw std::logic_error("a model writes beyond the buffer");
    for (size_t i = 0; i < content.size(); ++i) bytes[offset + i] = content[i];
  }

  // The same, keeping what the buffer holds.
  bool grow_and_keep(uint32_t needed, uint32_t silent) {
    const Bytes kept(std::vector<uint8_t>(bytes, bytes + size));
    if (!grow(needed, silent)) return false;
    put(0, kept);
    return true;
  }
};

// The record with the numbers at these places in the other byte order.
struct Number {
  size_t offset;
  size_t width;
};
Bytes in_network_order(Bytes record, const std::vector<Number> &numbers);

}  // namespace model
