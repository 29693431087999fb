// What the host calls for NVMe controllers and switches.

#include "mcserver_storage.h"
#include "shared/exported.h"

namespace mcserver::nvme::controllers {

EXPORTED int32_t mc_get_nvme_controller(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len) {
  return get_nvme_controller_info(ctx, reply, reply_size, reply_len, 0);
}

EXPORTED int32_t mc_event_nvme_controller(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len) {
  return get_nvme_controller_info(ctx, reply, reply_size, reply_len, 1);
}

}  // namespace mcserver::nvme::controllers
