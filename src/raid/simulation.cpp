#include "raid/simulation.h"

#include "shared/trace.h"

namespace mcserver::raid {

bool make_room_for_simulation(const char *function, int line, ReplyBuffer &reply, uint32_t needed, uint32_t *len) {
  *len = needed;
  if (needed <= reply.size() || reply.grow(needed)) return true;
  TRACE(function, line, "Data length(%d) larger than %d\n", static_cast<int>(needed), static_cast<int>(reply.size()));
  *len = 0;
  return false;
}

}  // namespace mcserver::raid
