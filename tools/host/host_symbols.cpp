#include "host/host_symbols.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/libc_stand_ins.h"
#include "mcserver_storage.h"

int32_t mc_debug_level = 0;
int32_t use_cmclog = 0;
FILE *outfp = nullptr;

uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available) {
  const host::HostScope not_the_plugin;
  return static_cast<host::ReplyOwner *>(ctx)->grow(size, available);
}

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  if (count > dest_size) return ERANGE;
  memset(dest, fill, count);
  return 0;
}

namespace {

// The watcher sees the copies too: they mark where a gone device is written, and where a text is handed over.
void tell_watcher(const char *function) {
  const host::HostScope not_the_plugin;
  if (not_the_plugin.suspended()) not_the_plugin.suspended()->before(function, "");
}

}  // namespace

// Copies up to the NUL and pads with NULs, like strncpy: a name that fills its field is kept whole.
int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  tell_watcher("strncpy_s");
  if (count > dest_size) return ERANGE;
  strncpy(dest, src, count);
  return 0;
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  tell_watcher("memcpy_s");
  if (count > dest_size) return ERANGE;
  memcpy(dest, src, count);
  return 0;
}
