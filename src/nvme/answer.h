// What both NVMe kinds do alike: log a change of the subsystem state, and answer the host with XML.
#pragma once

#include <cstdint>
#include <ctime>

#include "shared/reply_buffer.h"

namespace mcserver::nvme {

// The subsystem at the previous call of a kind; no file has these values at first.
struct Subsystem {
  time_t modified = -1;
  int32_t state = -1;
};

// Writes the system log's line for the change from the previous state.
void log_state_change(int line, const Subsystem &previous, const Subsystem &current);

// Renders the staging image, which has so many records, and hands the text to the host. The result is the entry
// point's.
struct Answer {
  const char *function;  // that a failed allocation is traced for
  int line;
  void (*render)(const uint8_t *image, char *out, uint32_t *size);

  int32_t send(const uint8_t *image, uint32_t records, ReplyBuffer reply, uint32_t *reply_len) const;
};

}  // namespace mcserver::nvme
