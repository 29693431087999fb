// The tests of the simulation that all kinds but expanders have. A room includes them once. How a simulation asks for
// room and where it is written is each kind's own.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>

#include "host/plugin_test.h"

namespace tests {

// What the tests must know of a kind.
struct SimulatedKind {
  const char *full;   // the entry points
  const char *delta;  //
  const char *store;
  Bytes file;         // a device,
  Bytes reply;        // as it is reported,
  Bytes quiet_delta;  // and the answer when there are no news
  Bytes simulation;   // as far as its length goes, over an untouched buffer
};

// Each room has its own.
extern const SimulatedKind kSimulatedKind;

class RaidSimulation : public PluginTest {
 protected:
  RaidSimulation() {
    files.write("/var/storctlr_info", Bytes().u8(2));
    begin();
  }

  void begin() { files.write_text("/debug/mctool_storage_debug", ""); }
  void end() { files.remove("/debug/mctool_storage_debug"); }
  void store(int64_t modified = 1000) { files.write(kSimulatedKind.store, kSimulatedKind.file, modified); }

  Reply full() { return call(kSimulatedKind.full); }
  Reply delta() { return call(kSimulatedKind.delta); }
};

TEST_F(RaidSimulation, ReadsAndDumpsNothing) {
  store();
  for (const char *marker : {"stordebug", "ctlrdebug", "pddebug", "vddebug", "bbudebug"})
    files.write_text(std::string("/var/mctool_") + marker, "");
  files.write_text("/var/log/TFM_FRU.bin", std::string(128, '\0'));

  EXPECT_EQ(full().bytes(), kSimulatedKind.simulation);
  EXPECT_THAT(calls(), testing::ElementsAre("stat /debug/mctool_storage_debug"));
}

TEST_F(RaidSimulation, NeedsNoStoreFileAndNoLock) {
  files.remove("/var/storctlr_info");

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), kSimulatedKind.simulation);
}

TEST_F(RaidSimulation, LastsAsLongAsItsMarker) {
  store();

  EXPECT_EQ(full().bytes(), kSimulatedKind.simulation);
  end();
  EXPECT_EQ(full().bytes(), kSimulatedKind.reply);
  begin();
  EXPECT_EQ(full().bytes(), kSimulatedKind.simulation);
}

TEST_F(RaidSimulation, RemembersNothing) {
  store();
  full();

  EXPECT_EQ(delta().bytes(), kSimulatedKind.reply);
}

TEST_F(RaidSimulation, LeavesWhatIsRemembered) {
  end();
  store();
  full();
  begin();
  full();

  EXPECT_EQ(delta().length, 0u);
  store(2000);
  EXPECT_EQ(delta().bytes(), kSimulatedKind.quiet_delta);
}

TEST_F(RaidSimulation, IsNotWhatADeltaReports) {
  store();

  EXPECT_EQ(delta().bytes(), kSimulatedKind.reply);
  EXPECT_EQ(std::ranges::count(calls(), "stat /debug/mctool_storage_debug"), 0);
}

}  // namespace tests
