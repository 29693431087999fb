// The base of the tests that read the physical drive store file.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "host/refusal.h"
#include "raid/drives/drive_bytes.h"

namespace tests {

class DriveTest : public PluginTest {
 protected:
  // The collector's lock file is there whatever kinds of device there are.
  DriveTest() { files.write("/var/storctlr_info", Bytes().u8(2)); }

  // As many drives are announced as there are.
  void store(const std::vector<Drive> &drives, int64_t modified = 1000) {
    store(static_cast<uint32_t>(drives.size()), drives, modified);
  }
  void store(uint32_t announced, const std::vector<Drive> &drives, int64_t modified = 1000) {
    files.write(kDriveStore, drive_file(announced, drives), modified);
  }

  Reply full(const CallOptions &options = {}) { return call("mc_get_store_phydrives", options); }
  Reply delta(const CallOptions &options = {}) { return call("mc_delta_store_phydrives", options); }

  auto number_of_calls(const std::string &libc_call) const { return std::ranges::count(calls(), libc_call); }

  // What the reply's buffer holds at that record, counted or not.
  static Bytes slot(const Reply &reply, size_t number) {
    return reply.buffer.slice(kDriveHeaderSize + kDriveSize * number, kDriveSize);
  }
};

// Sizes are traced as signed numbers.
inline std::string drives_too_large(uint32_t needed, uint32_t granted) {
  return "<get_store_phydrives: 1386> [get_store_phydrives]Data length(" +
         std::to_string(static_cast<int32_t>(needed)) + ") larger than " + std::to_string(granted) + "\n";
}

}  // namespace tests
