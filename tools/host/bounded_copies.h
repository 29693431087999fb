// What the host's bounds-checked functions do. Each returns 0, or ERANGE when `count` is too large.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstring>

namespace host {

inline int bounded_fill(void *dest, size_t dest_size, int fill, size_t count) {
  if (count > dest_size) return ERANGE;
  memset(dest, fill, count);
  return 0;
}

// Copies up to the NUL and pads with NULs, like strncpy: a name that fills its field is kept whole.
inline int bounded_text_copy(char *dest, size_t dest_size, const char *src, size_t count) {
  if (count > dest_size) return ERANGE;
  strncpy(dest, src, count);
  return 0;
}

inline int bounded_copy(void *dest, size_t dest_size, const void *src, size_t count) {
  if (count > dest_size) return ERANGE;
  memcpy(dest, src, count);
  return 0;
}

}  // namespace host
