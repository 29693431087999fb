#include "raid/storage_lock.h"

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "shared/exported.h"
#include "shared/trace.h"

namespace mcserver::raid {

constexpr LockProfile kStorageLock = {
    .path = records::kRaidLockPath,
    .open_failed = {125, TRACE_PREFIX "%s Open failed %s\n"},
    .no_descriptor = {132, TRACE_PREFIX "Failed to get file descriptor for %s, %s\n"},
    .lock_failed = {139, TRACE_PREFIX "Failed to lock File %s, %s\n"},
    .data_open_failed = {168, TRACE_PREFIX "%s Open failed %s\n"},
    .unlock_failed = {101, TRACE_PREFIX "Failed to UnLock File %s, %s\n"},
};

EXPORTED int32_t getlock_and_open_file(struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out,
                                       FILE **data_stream_out, const char *path) {
  return acquire_store_lock(kStorageLock, stat_out, fd_out, lock_stream_out, data_stream_out, path);
}

EXPORTED int unlock_and_close_file(int32_t fd, FILE *lock_stream, FILE *data_stream) {
  return release_store_lock(kStorageLock, fd, lock_stream, data_stream);
}

}  // namespace mcserver::raid
