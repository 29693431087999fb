// The symbols that a host exports to the plug-in, for every program here that plays the host.
#pragma once

#include <cstdint>

namespace host {

// What the context handle that this host passes to an entry point points to: the owner of the reply buffer.
class ReplyOwner {
 public:
  virtual ~ReplyOwner() = default;

  // mc_grow_attribute_buffer for this buffer.
  virtual uint8_t *grow(uint32_t size, uint32_t *available) = 0;
};

}  // namespace host
