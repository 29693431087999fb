// The host's side of a reply buffer, with every way in which a host may answer a request for a larger one.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "host/bytes.h"
#include "host/host_symbols.h"

namespace tests {

enum class Growth {
  kInPlace,     // grants the size, at the same address
  kMove,        // grants the size at another address; the old buffer, and what it held, is gone
  kRefuse,      // leaves everything as it is and says so
  kGrantLess,   // grants one byte less than the size
  kNull,        // returns null, though it claims to grant the size
  kSayNothing,  // grants the size at another address, without writing the size variable
};

void PrintTo(Growth growth, std::ostream *out);

// What a byte that nobody wrote looks like: in the buffer that is passed in, and in one that a growth brought.
inline constexpr uint8_t kUntouched = 0xA5;
inline constexpr uint8_t kUntouchedAfterGrowth = 0x5A;

class HostReplyBuffer : public host::ReplyOwner {
 public:
  // `growth` tells what becomes of each request, the last one of all that follow. What asks for more than `most` is
  // refused.
  HostReplyBuffer(uint32_t size, std::vector<Growth> growth, uint32_t most = UINT32_MAX);

  uint8_t *grow(uint32_t size, uint32_t *available) override;

  uint8_t *bytes() const { return current_; }
  uint32_t size() const { return size_; }
  const std::vector<uint32_t> &requests() const { return requests_; }

 private:
  void replace(uint32_t size, uint8_t fill);
  void grow_in_place(uint32_t size);

  std::vector<Growth> growth_;
  const uint32_t most_;
  std::vector<uint32_t> requests_;
  std::unique_ptr<uint8_t[]> block_;
  uint8_t *current_ = nullptr;
  uint32_t size_ = 0;
};

}  // namespace tests
