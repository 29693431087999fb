// What the host calls for NVMe drives.

#include "mcserver_storage.h"
#include "shared/exported.h"

namespace mcserver::nvme::drives {

EXPORTED int32_t mc_get_nvme_phy_drive(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len) {
  return get_nvme_phy_drive_info(ctx, reply, reply_size, reply_len, 0);
}

EXPORTED int32_t mc_event_nvme_phy_drive(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len) {
  return get_nvme_phy_drive_info(ctx, reply, reply_size, reply_len, 1);
}

}  // namespace mcserver::nvme::drives
