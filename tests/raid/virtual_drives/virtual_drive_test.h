// The base of the tests that read the virtual drive store file.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "host/refusal.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"

namespace tests {

class VirtualDriveTest : public PluginTest {
 protected:
  // The collector's lock file is there whatever kinds of device there are.
  VirtualDriveTest() { files.write("/var/storctlr_info", Bytes().u8(2)); }

  void store(const std::vector<VirtualDrive> &drives, int64_t modified = 1000) {
    files.write(kVirtualDriveStore, virtual_drive_file(drives), modified);
  }

  Reply full(const CallOptions &options = {}) { return call("mc_get_store_virtdrives", options); }
  Reply delta(const CallOptions &options = {}) { return call("mc_delta_store_virtdrives", options); }

  // What both entry points call, with any flag.
  Reply retrieve(int32_t flag, const CallOptions &options = {}) {
    HostReplyBuffer buffer(options.size, options.growth);
    Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
    reply.status = PLUGIN(get_store_virtdrives)(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(),
                                                &reply.length, flag);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    reply.requests = buffer.requests();
    return reply;
  }

  // What a full call leaves, at 1000 seconds.
  void remember(const std::vector<VirtualDrive> &drives) {
    store(drives);
    ASSERT_EQ(full({.growth = {Growth::kMove}}).status, 0);
    forget_calls();
  }

  auto number_of_calls(const std::string &libc_call) const { return std::ranges::count(calls(), libc_call); }

  // What the reply's buffer holds at that record, counted or not.
  static Bytes slot(const Reply &reply, size_t number) {
    return reply.buffer.slice(kVirtualDriveHeaderSize + kVirtualDriveSize * number, kVirtualDriveSize);
  }
};

// The traces of a retrieval.
inline std::string virtual_drive_trace(int line, const std::string &message) {
  return "<get_store_virtdrives: " + std::to_string(line) + "> [get_store_virtdrives]" + message + "\n";
}

inline std::string virtual_drives_too_large(uint32_t granted, uint32_t passed_in) {
  return virtual_drive_trace(1875,
                             "Data length(" + std::to_string(granted) + ") larger than " + std::to_string(passed_in));
}

inline std::string virtual_drive_read_error(const std::string &reason) {
  return virtual_drive_trace(1961, "Error reading file /var/storvirtdrive_info, " + reason);
}

}  // namespace tests
