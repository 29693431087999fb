#include "shared/summary_lists.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "mcserver_storage.h"

namespace mcserver {

bool ListMemory::resize(uint32_t new_size) {
  errno = 0;
  void *resized = realloc(bytes, new_size);
  const bool failed = errno == ENOMEM;
  // A null result leaves the old block behind, which nobody would free.
  if (!resized) free(bytes);
  if (failed) free(resized);

  bytes = failed ? nullptr : resized;
  if (bytes && new_size > size) memset(static_cast<uint8_t *>(bytes) + size, 0, new_size - size);
  size = bytes ? new_size : 0;
  return !failed;
}

bool ListMemory::make(uint32_t new_size) {
  static constinit max_align_t no_entries = {};
  if (bytes) return true;
  bytes = new_size > 0 ? calloc(1, new_size) : &no_entries;
  if (bytes) size = new_size;
  return bytes != nullptr;
}

bool ListMemory::enlarge(uint32_t new_size) {
  if (size >= new_size) return true;
  void *enlarged = realloc(size > 0 ? bytes : nullptr, new_size);
  if (!enlarged) return false;
  memset(static_cast<uint8_t *>(enlarged) + size, 0, new_size - size);
  bytes = enlarged;
  size = new_size;
  return true;
}

void ListMemory::clear(uint32_t length) {
  const uint32_t clearable = std::min(length, size);
  if (clearable > 0) memset_s(bytes, clearable, 0, clearable);
}

void ListMemory::release() {
  if (size > 0) free(bytes);
  *this = {};
}

}  // namespace mcserver
