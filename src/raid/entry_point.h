// What a RAID kind's two entry points have in common.
#pragma once

#include <cstdint>

namespace mcserver::raid {

inline constexpr int32_t kFull = 0;
inline constexpr int32_t kDelta = 1;

// One of them: its name, and where it reports a null buffer.
struct EntryPoint {
  const char *name;
  int null_buffer_line;
};

using Retrieve = int32_t(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);
using Simulate = int32_t(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

// The null-buffer paths of these two differ, in the length, and hosts have come to rely on it. A null length is refused
// where it would first be written.
int32_t get_full(const EntryPoint &entry_point, Retrieve *retrieve, Simulate *simulate, void *ctx, uint8_t *buf,
                 uint32_t bufsize, uint32_t *len);
int32_t get_delta(const EntryPoint &entry_point, Retrieve *retrieve, void *ctx, uint8_t *buf, uint32_t bufsize,
                  uint32_t *len);

}  // namespace mcserver::raid
