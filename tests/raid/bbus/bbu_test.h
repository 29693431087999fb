// The base of the tests that read the BBU store file.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "raid/bbus/bbu_bytes.h"

namespace tests {

class BbuTest : public PluginTest {
 protected:
  // The controllers' file is the lock; what it holds is of no interest here.
  BbuTest() { files.write(kStorageLock, Bytes()); }

  void store(const std::vector<Bbu> &bbus, int64_t modified = 1000) {
    files.write(kBbuStore, bbu_file(bbus), modified);
  }

  // A file of that size, all zero.
  void store_sparse(uint64_t size, int64_t modified = 1000) {
    files.write(kBbuStore, Bytes());
    files.resize(kBbuStore, size, modified);
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
