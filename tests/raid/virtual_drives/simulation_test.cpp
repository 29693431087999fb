#include "raid/simulation_tests.h"

#include "raid/raid_names.h"
#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kSimulatedLength = length_of(2);

// What is not named here stays as the buffer held it.
Bytes simulated_virtual_drive(const std::string &guid, const std::string &name, uint8_t before) {
  const Bytes hot_spare = Bytes::hex("01 01 00  00 00 00 00 00 00 00 00  00 10 00 00 00 00 00 00  00");
  return Bytes::repeated(kVirtualDriveSize, before)
      .put(0, Bytes::hex("01 01"))  // controller, target
      .put_text(2, guid)
      .put_text(35, name)
      .put(51, Bytes::hex("00"))                               // status
      .put(52, Bytes::hex("00 00 00 40 00 00 00 00"))          // size
      .put(60, Bytes::hex("01 00"))                            // raid_level
      .put(62, Bytes::hex("00 10 00 00"))                      // strip_size
      .put(66, Bytes::hex("01 01"))                            // drives_per_span, span_depth
      .put(68, Bytes::hex("00 00 00"))                         // access, I/O and read-ahead policy
      .put(71, Bytes::hex("02 02 01"))                         // write cache policies, drive cache policy
      .put(74, Bytes::hex("00 01 01"))                         // background init, snapshot, delete oldest
      .put(77, Bytes::hex("02  01 01  01 01"))                 // member drives
      .put(94, Bytes::hex("02") + hot_spare + hot_spare)       // hot spares
      .put(5215, Bytes::hex("00 00 00 00 00 00 00 00"))        // remaining_space
      .put(5223, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // reconstruction
      .put(5253, Bytes::hex("00"))                             // boot_drive
      .put(5798, Bytes::hex("00"));                            // vd_sed_state
}

// The simulated reply over what the buffer held. Its numbers are little-endian.
Bytes simulated_virtual_drives(uint8_t before) {
  return Bytes::hex("28 00 08 02") + little_endian().u32(kVirtualDriveSize).u8(0).fill(8, before) +
         simulated_virtual_drive("GUID-0", "VirtDrive-0", before) +
         simulated_virtual_drive("GUID-1", "VirtDrive-1", before);
}

}  // namespace

const SimulatedKind kSimulatedKind = {
    .full = "mc_get_store_virtdrives",
    .delta = "mc_delta_store_virtdrives",
    .store = kVirtualDriveStore,
    .file = virtual_drive_file({volume(0)}),
    .reply = virtual_drive_reply({volume(0)}),
    .quiet_delta = Bytes(),
    .simulation = simulated_virtual_drives(kUntouched),
};

namespace {

class VirtualDriveSimulation : public VirtualDriveTest {
 protected:
  VirtualDriveSimulation() { files.write_text(kSimulationMarker, ""); }
};

TEST_F(VirtualDriveSimulation, IsTwoDrives) {
  trace_at(9);

  const Reply reply = full({.size = 20000, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedLength);
  EXPECT_EQ(reply.buffer, simulated_virtual_drives(kUntouched) + Bytes::repeated(20000 - kSimulatedLength, kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// ----------------------------------------------------------------------------------------------------------- growth

TEST_F(VirtualDriveSimulation, FitsExactly) {
  const Reply reply = full({.size = kSimulatedLength, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.bytes(), simulated_virtual_drives(kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
}

class GrantedVirtualDriveSimulation : public VirtualDriveSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(GrantedVirtualDriveSimulation, IsWrittenToTheBufferThatTheHostReturned) {
  const Reply reply = full({.size = 0, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedLength);
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedLength));
  EXPECT_EQ(reply.buffer, simulated_virtual_drives(kUntouchedAfterGrowth));
}

// The size is set before the host is asked, so one that does not write it has granted it.
INSTANTIATE_TEST_SUITE_P(, GrantedVirtualDriveSimulation, Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

TEST_F(VirtualDriveSimulation, AsksForTheByteThatIsMissing) {
  EXPECT_THAT(full({.size = kSimulatedLength - 1}).requests, ElementsAre(kSimulatedLength));
  EXPECT_THAT(full({.size = 100}).requests, ElementsAre(kSimulatedLength));
}

class RefusedVirtualDriveSimulation : public VirtualDriveSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedVirtualDriveSimulation, IsTooLarge) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "<mc_get_store_virtdrives: 2023> [mc_get_store_virtdrives]Data length(" +
                         std::to_string(kSimulatedLength) + ") larger than " +
                         std::to_string(size_after(GetParam(), 100, kSimulatedLength)) + "\n");
}

INSTANTIATE_TEST_SUITE_P(, RefusedVirtualDriveSimulation, every_refusal());

// ------------------------------------------------------------------------------------------------------ entry points

class VirtualDriveEntryPoints : public VirtualDriveTest {
 protected:
  uint32_t length = 77;
};

TEST_F(VirtualDriveEntryPoints, TheFullOneLeavesTheLengthAloneWithoutABuffer) {
  files.write_text(kSimulationMarker, "");
  trace_at(3);

  EXPECT_EQ(PLUGIN(mc_get_store_virtdrives)(nullptr, nullptr, 100, &length), -35);

  EXPECT_EQ(length, 77u);
  EXPECT_EQ(trace(), "<mc_get_store_virtdrives: 2006> [mc_get_store_virtdrives]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(VirtualDriveEntryPoints, TheDeltaOneClearsTheLengthWithoutABuffer) {
  store({volume(0)});
  trace_at(3);

  EXPECT_EQ(PLUGIN(mc_delta_store_virtdrives)(nullptr, nullptr, 100, &length), -35);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_delta_store_virtdrives: 2096> [mc_delta_store_virtdrives]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(VirtualDriveEntryPoints, WithoutABufferRememberNothing) {
  store({volume(0)});
  PLUGIN(mc_get_store_virtdrives)(nullptr, nullptr, 65536, &length);
  PLUGIN(mc_delta_store_virtdrives)(nullptr, nullptr, 65536, &length);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveEntryPoints, TheFullOneLooksForTheMarkerThenReadsTheStoreFile) {
  store({volume(0)});

  full();

  EXPECT_EQ(calls().at(0), "stat /debug/mctool_storage_debug");
  EXPECT_EQ(calls().at(1), "fopen /var/storctlr_info");
}

TEST_F(VirtualDriveEntryPoints, PassOnTheHostsContextAndItsSize) {
  store({volume(0)});

  EXPECT_THAT(full({.size = 10}).requests, ElementsAre(length_of(1)));
  store({volume(1)}, 2000);
  EXPECT_THAT(delta({.size = 10}).requests, ElementsAre(length_of(2)));
}

}  // namespace
}  // namespace tests
