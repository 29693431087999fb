// How many descriptors this process has open: more after a call than before it means that some were left open.
#pragma once

#include <poll.h>

#include <algorithm>
#include <array>

namespace tests {

// Tests that open and close thousands of files ask often, so this is one call to the system. Nobody has more open.
inline auto open_descriptors() {
  std::array<pollfd, 256> descriptors = {};
  for (size_t fd = 0; fd < descriptors.size(); ++fd) descriptors[fd].fd = static_cast<int>(fd);
  poll(descriptors.data(), descriptors.size(), 0);
  return std::ranges::count_if(descriptors, [](const pollfd &one) { return !(one.revents & POLLNVAL); });
}

}  // namespace tests
