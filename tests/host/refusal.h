// The ways in which a host refuses a request for a larger buffer, and which size it then says that the buffer has.
#pragma once

#include <gtest/gtest.h>

#include "host/reply_buffer.h"

namespace tests {

inline auto every_refusal() { return testing::Values(Growth::kRefuse, Growth::kGrantLess, Growth::kNull); }

// `passed_in` is the buffer's size before, `needed` the one that was asked for.
inline uint32_t size_after(Growth refusal, uint32_t passed_in, uint32_t needed) {
  switch (refusal) {
    case Growth::kGrantLess:
      return needed - 1;
    case Growth::kNull:
      return needed;
    default:
      return passed_in;
  }
}

}  // namespace tests
