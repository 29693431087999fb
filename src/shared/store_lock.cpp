#include "shared/store_lock.h"

#include <sys/file.h>

#include <cerrno>
#include <cstring>

#include "mcserver_storage.h"
#include "shared/trace.h"

namespace mcserver {
namespace {

void trace_lock(const char *function, const LockMessage &message, const char *path) {
  if (!trace_is_on()) return;
  fprintf(outfp, message.format, function, message.line, function, path, strerror(errno));
  fflush(outfp);
}

}  // namespace

int32_t acquire_store_lock(const LockProfile &profile, struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out,
                           FILE **data_stream_out, const char *path) {
  constexpr char function[] = "getlock_and_open_file";
  if (!stat_out || !fd_out || !lock_stream_out) return MC_STORE_UNAVAILABLE;  // the host's error

  errno = 0;
  FILE *lock_stream = fopen(profile.path, "rb");
  *lock_stream_out = lock_stream;
  if (!lock_stream) {
    if (errno == ENOENT) return MC_STORE_NO_DATA;  // no collector has run yet: nothing worth a trace
    trace_lock(function, profile.open_failed, profile.path);
    return MC_STORE_UNAVAILABLE;
  }

  const int fd = fileno(lock_stream);
  *fd_out = fd;
  if (fd == -1) {
    trace_lock(function, profile.no_descriptor, profile.path);
    fclose(lock_stream);
    return MC_STORE_UNAVAILABLE;
  }

  if (flock(fd, LOCK_SH) == -1) {
    trace_lock(function, profile.lock_failed, profile.path);
    fclose(lock_stream);
    return MC_STORE_UNAVAILABLE;
  }

  // The file is looked at only now: before, the collector may have been writing it.
  if (stat(profile.path, stat_out) != 0 || (path && stat(path, stat_out) != 0)) {
    release_store_lock(profile, fd, lock_stream, data_stream_out ? *data_stream_out : nullptr);
    return MC_STORE_NO_DATA;
  }
  if (!path) return MC_STORE_SUCCESS;

  if (!data_stream_out) {
    release_store_lock(profile, fd, lock_stream, nullptr);  // the host's error: nowhere to put the stream
    return MC_STORE_UNAVAILABLE;
  }
  *data_stream_out = fopen(path, "rb");
  if (!*data_stream_out) {
    trace_lock(function, profile.data_open_failed, path);
    release_store_lock(profile, fd, lock_stream, nullptr);
    return MC_STORE_UNAVAILABLE;
  }
  return MC_STORE_SUCCESS;
}

int release_store_lock(const LockProfile &profile, int32_t fd, FILE *lock_stream, FILE *data_stream) {
  if (flock(fd, LOCK_UN) == -1) trace_lock("unlock_and_close_file", profile.unlock_failed, profile.path);
  int result = lock_stream ? fclose(lock_stream) : EOF;
  if (data_stream) result = fclose(data_stream);
  return result;
}

StoreFile::StoreFile(const LockProfile &profile, const char *path)
    : profile_(profile),
      status_(acquire_store_lock(profile, &stat_, &fd_, &lock_stream_, &data_stream_, path)),
      is_open_(status_ == MC_STORE_SUCCESS) {}

StoreFile::~StoreFile() { release(); }

void StoreFile::release() {
  if (is_open_) release_store_lock(profile_, fd_, lock_stream_, data_stream_);
  is_open_ = false;
}

}  // namespace mcserver
