// The base of the tests that read the BBU store file.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "mcserver_storage/bbus/bbu_bytes.h"

namespace tests {

inline void PrintTo(Growth growth, std::ostream *out) {
  constexpr const char *kNames[] = {"in place", "move", "refuse", "grant less", "null", "say nothing"};
  *out << kNames[static_cast<size_t>(growth)];
}

class BbuTest : public PluginTest {
 protected:
  // The controllers' file is the lock; what it holds is of no interest here.
  BbuTest() { files.write(kStorageLock, Bytes()); }

  void store(const std::vector<Bbu> &bbus, int64_t modified = 1000) {
    files.write(kBbuStore, bbu_file(bbus), modified);
  }

  // A file of that size, with zeros that take no room on the disk.
  void store_sparse(uint64_t size, int64_t modified = 1000) {
    files.write(kBbuStore, Bytes());
    const std::string path = files.real(kBbuStore);
    struct timespec times[2] = {};
    times[0].tv_sec = times[1].tv_sec = static_cast<time_t>(modified);
    if (truncate(path.c_str(), static_cast<off_t>(size)) != 0 || utimensat(AT_FDCWD, path.c_str(), times, 0) != 0)
      throw std::runtime_error("cannot resize " + path);
  }

  Reply full(const CallOptions &options = {}) { return call("mc_get_store_bbu", options); }
  Reply delta(const CallOptions &options = {}) { return call("mc_delta_store_bbu", options); }

  // What a full call leaves, at 1000 seconds.
  void remember(const std::vector<Bbu> &bbus) {
    store(bbus);
    ASSERT_EQ(full().status, 0);
    forget_calls();
  }

  auto number_of_calls(const std::string &libc_call) const { return std::ranges::count(calls(), libc_call); }

  // What the reply's buffer holds at that record, counted or not.
  static Bytes slot(const Reply &reply, size_t number) {
    return reply.buffer.slice(kBbuHeaderSize + kBbuSize * number, kBbuSize);
  }
};

// The trace of a file that could not be read to its end.
inline std::string bbu_read_error(const std::string &reason) {
  return "<get_store_bbu: 2431> [get_store_bbu]Error reading file /var/storBBU_info, " + reason + "\n";
}

}  // namespace tests
