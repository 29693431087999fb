// The lock that keeps the collector from rewriting a store file while it is read. Each family of devices has one lock
// file, which every kind of the family locks, whatever file it reads.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>

namespace mcserver {

// A trace message of the lock: where it stands, and its format, prefix included. It is printed with the trace
// prefix's three arguments, a path, and the text of errno.
struct LockMessage {
  int line;
  const char *format;
};

// What differs from one family to the next.
struct LockProfile {
  const char *path;
  LockMessage open_failed;
  LockMessage no_descriptor;
  LockMessage lock_failed;
  LockMessage data_open_failed;
  LockMessage unlock_failed;
};

// Opens and share-locks the family's lock file, and the file at `path`, if there is one, under the same lock. This is
// what getlock_and_open_file tells of in the public header, and its counterpart.
int32_t acquire_store_lock(const LockProfile &profile, struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out,
                           FILE **data_stream_out, const char *path);
int release_store_lock(const LockProfile &profile, int32_t fd, FILE *lock_stream, FILE *data_stream);

// A store file, opened and locked for as long as this object lives.
class StoreFile {
 public:
  // Opens the lock file itself, or `path` under its lock. Nothing but status() may be used unless that is 0.
  explicit StoreFile(const LockProfile &profile, const char *path = nullptr);
  StoreFile(const StoreFile &) = delete;
  StoreFile &operator=(const StoreFile &) = delete;
  ~StoreFile();

  int32_t status() const { return status_; }
  time_t modified() const { return stat_.st_mtime; }
  uint64_t size() const { return static_cast<uint64_t>(stat_.st_size); }
  FILE *stream() const { return data_stream_ ? data_stream_ : lock_stream_; }

  // Unlocks and closes before the end of this object, for those whose moment to do so is fixed.
  void release();

 private:
  const LockProfile &profile_;
  struct stat stat_ = {};
  int32_t fd_ = -1;
  FILE *lock_stream_ = nullptr;
  FILE *data_stream_ = nullptr;
  int32_t status_;
  bool is_open_;
};

}  // namespace mcserver
