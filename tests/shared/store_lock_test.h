// The base of the tests of the lock under which store files are read.
#pragma once

#include <fcntl.h>

#include <string>

#include "host/open_descriptors.h"
#include "host/plugin_test.h"

namespace tests {

inline constexpr char kLockFile[] = "/var/storctlr_info";
inline constexpr char kOtherFile[] = "/var/storphydrive_info";

inline bool is_open(int fd) { return fcntl(fd, F_GETFD) != -1; }
inline bool is_read_only(FILE *stream) { return (fcntl(fileno(stream), F_GETFL) & O_ACCMODE) == O_RDONLY; }

inline std::string content(FILE *stream) {
  char text[64];
  return {text, fread(text, 1, sizeof text, stream)};
}

class StoreLock : public PluginTest {
 protected:
  // What the plug-in gives out, with values that it would not give.
  struct Taken {
    struct stat stat = {};
    int32_t fd = -7;
    FILE *lock_stream = stdin;
    FILE *data_stream = nullptr;
  };

  StoreLock() {
    files.write(kLockFile, Bytes().text("lock file", 9), 1234);
    files.write(kOtherFile, Bytes().text("data", 4), 5678);
  }

  int32_t take(Taken &taken, const char *path = nullptr) {
    return take(&taken.stat, &taken.fd, &taken.lock_stream, &taken.data_stream, path);
  }
  int32_t take(struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out, FILE **data_stream_out,
               const char *path) {
    return PLUGIN(getlock_and_open_file)(stat_out, fd_out, lock_stream_out, data_stream_out, path);
  }

  int release(const Taken &taken) { return release(taken.fd, taken.lock_stream, taken.data_stream); }
  int release(int32_t fd, FILE *lock_stream, FILE *data_stream) {
    return PLUGIN(unlock_and_close_file)(fd, lock_stream, data_stream);
  }

  bool lock_is_free() const { return files.is_unlocked(kLockFile); }

  // A stream that the caller left in the location of the data stream.
  FILE *stream_of_the_caller() { return fopen(files.real(kOtherFile).c_str(), "rb"); }
};

}  // namespace tests
