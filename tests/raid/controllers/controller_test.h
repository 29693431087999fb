// The base of the tests that read the controller store file.
#pragma once

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "host/plugin_test.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {

inline constexpr uint8_t kNotReady = 1;
inline constexpr uint8_t kReady = 2;

// For the names of tests that are run for several of them.
inline void PrintTo(const Controller &controller, std::ostream *out) {
  *out << int{controller.index} << ' ' << controller.serial << std::hex << ' ' << controller.vendor_id << ' '
       << controller.device_id << ' ' << controller.subvendor_id << ' ' << controller.subdevice_id << std::dec;
}

class ControllerTest : public PluginTest {
 protected:
  void store(uint8_t state, const std::vector<Controller> &controllers, int64_t modified = 1000) {
    files.write(kControllerStore, controller_file(state, controllers), modified);
  }

  // What a full call leaves, at 1000 seconds.
  void remember(const std::vector<Controller> &controllers, uint8_t state = kReady) {
    store(state, controllers);
    ASSERT_EQ(full({.size = 1u << 20}).status, 0);
    forget_calls();
  }

  Reply full(const CallOptions &options = {}) { return call("mc_get_store_ctrls", options); }
  Reply delta(const CallOptions &options = {}) { return call("mc_delta_store_ctrls", options); }

  auto number_of_calls(const std::string &libc_call) const { return std::ranges::count(calls(), libc_call); }

  // What the reply's buffer holds at that record, counted or not.
  static Bytes slot(const Reply &reply, size_t number) {
    return reply.buffer.slice(kControllerHeaderSize + kControllerSize * number, kControllerSize);
  }
};

// Sizes are traced as signed numbers, and whatever the buffer's is, as larger than this.
inline std::string too_large(uint32_t needed) {
  return "<get_store_ctrls: 869> [get_store_ctrls]Data length(" + std::to_string(static_cast<int32_t>(needed)) +
         ") larger than 65536\n";
}

// The lines about a subsystem whose state changed, and about each record that is reported then.
inline std::string state_changed(const std::string &details) {
  return "mcserver_storage.cpp:893:Storage subsystem state changed, " + details + "\n";
}
inline std::string changed_with_the_state(const std::string &details) {
  return "mcserver_storage.cpp:989:Storage subsystem state changed, " + details + "\n";
}

// The times of most tests, with their texts.
inline const std::string kTime0 = "0, Thu Jan  1 00:00:00 1970\n";
inline const std::string kTime1000 = "1000, Thu Jan  1 00:16:40 1970\n";
inline const std::string kTime2000 = "2000, Thu Jan  1 00:33:20 1970\n";
inline const std::string kTime3000 = "3000, Thu Jan  1 00:50:00 1970\n";

// A line about a file that could not be read to its end.
inline std::string read_error(const std::string &reason) {
  return "mcserver_storage.cpp:1054:Error reading file /var/storctlr_info, " + reason + "\n";
}

}  // namespace tests
