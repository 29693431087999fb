#include "nvme/answer.h"

#include <cerrno>
#include <cstring>

#include "mcserver_storage.h"
#include "nvme/xml_text.h"
#include "shared/owned_memory.h"
#include "shared/trace.h"

namespace mcserver::nvme {

void log_state_change(int line, const Subsystem &previous, const Subsystem &current) {
  const CtimeText previous_time(previous.modified);
  const CtimeText current_time(current.modified);
  SYSTEM_LOG(kNvmeSource, line,
             "NVME subsystem state changed, prevState(%d), newState(%d), prevModTime(%lld, %s), curModTime(%lld, %s)\n",
             previous.state, current.state, static_cast<long long>(previous.modified), previous_time.c_str(),
             static_cast<long long>(current.modified), current_time.c_str());
}

int32_t Answer::send(const uint8_t *image, uint32_t records, ReplyBuffer reply, uint32_t *reply_len) const {
  uint32_t length = xml_capacity(records);
  const OwnedMemory xml(calloc(1, length));
  if (!xml) {
    TRACE(function, line, "%s: xmlBuf calloc(%d) failed: %s!\n", function, static_cast<int>(length), strerror(errno));
    return MC_STORE_NO_BUFFER;
  }
  render(image, reinterpret_cast<char *>(xml.bytes()), &length);

  if (reply.size() < length && !reply.grow(length)) return MC_STORE_NO_BUFFER;
  if (!reply.bytes()) return MC_STORE_UNAVAILABLE;  // the host's error: no buffer, but the size of one
  memcpy_s(reply.bytes(), length, xml.bytes(), length);
  *reply_len = length;
  return MC_STORE_SUCCESS;
}

}  // namespace mcserver::nvme
