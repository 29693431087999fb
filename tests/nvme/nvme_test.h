// The base of the tests that read the NVMe store files.
#pragma once

#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "nvme/nvme_bytes.h"

namespace tests {

inline constexpr uint8_t kAuxPower = 3;
inline constexpr uint8_t kMainPower = 4;

// The reply as text.
inline std::string text_of(const Reply &reply) {
  const Bytes bytes = reply.bytes();
  return {bytes.data(), bytes.data() + bytes.size()};
}

class NvmeControllerTest : public PluginTest {
 protected:
  void store(uint8_t state, const std::vector<NvmeController> &controllers, int64_t modified = 1000) {
    files.write(kNvmeControllerStore, nvme_controller_file(state, controllers), modified);
  }
  Reply full(const CallOptions &options = {}) { return call("mc_get_nvme_controller", options); }
  Reply event(const CallOptions &options = {}) { return call("mc_event_nvme_controller", options); }
};

class NvmeDriveTest : public PluginTest {
 protected:
  NvmeDriveTest() { files.write(kNvmeControllerStore, Bytes().u8(kMainPower)); }

  void store(const Bytes &file, int64_t modified = 1000) { files.write(kNvmeDriveStore, file, modified); }
  Reply full(const CallOptions &options = {}) { return call("mc_get_nvme_phy_drive", options); }
  Reply event(const CallOptions &options = {}) { return call("mc_event_nvme_phy_drive", options); }
};

}  // namespace tests
