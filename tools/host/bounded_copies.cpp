// The host's bounds-checked functions. They are not beside its other symbols because tests bring their own, which tell
// of each call.

#include "host/bounded_copies.h"

#include "mcserver_storage.h"

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  return host::bounded_fill(dest, dest_size, fill, count);
}

int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  return host::bounded_text_copy(dest, dest_size, src, count);
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  return host::bounded_copy(dest, dest_size, src, count);
}
