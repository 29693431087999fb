#include "host/host_symbols.h"

#include "host/redirection.h"
#include "mcserver_storage.h"

int32_t mc_debug_level = 0;
int32_t use_cmclog = 0;
FILE *outfp = nullptr;

uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available) {
  const host::HostScope not_the_plugin;
  return static_cast<host::ReplyOwner *>(ctx)->grow(size, available);
}
