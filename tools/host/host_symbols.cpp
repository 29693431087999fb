#include "host/host_symbols.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "host/libc_stand_ins.h"
#include "mcserver_storage.h"

int32_t mc_debug_level = 0;
int32_t use_cmclog = 0;
FILE *outfp = nullptr;

uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available) {
  const host::HostScope not_the_plugin;
  return static_cast<host::ReplyOwner *>(ctx)->grow(size, available);
}

namespace {

// The watcher sees the bounded functions too: they mark where a gone device is written, and where a text is handed
// over. What is told of a call is its size, and the other one where a plug-in gives two different ones.
void tell_watcher(const char *function, size_t dest_size, size_t count) {
  const host::HostScope not_the_plugin;
  if (!not_the_plugin.suspended()) return;
  std::string sizes = std::to_string(count);
  if (count != dest_size) sizes += " of " + std::to_string(dest_size);
  not_the_plugin.suspended()->before(function, sizes);
}

}  // namespace

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  tell_watcher("memset_s", dest_size, count);
  if (count > dest_size) return ERANGE;
  memset(dest, fill, count);
  return 0;
}

// Copies up to the NUL and pads with NULs, like strncpy: a name that fills its field is kept whole.
int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  tell_watcher("strncpy_s", dest_size, count);
  if (count > dest_size) return ERANGE;
  strncpy(dest, src, count);
  return 0;
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  tell_watcher("memcpy_s", dest_size, count);
  if (count > dest_size) return ERANGE;
  memcpy(dest, src, count);
  return 0;
}
