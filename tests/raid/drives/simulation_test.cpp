#include "raid/simulation_tests.h"

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kAnnouncedLength = drive_reply_size(2);
constexpr uint32_t kWrittenLength = drive_reply_size(3);

// What is not named here stays as the buffer held it.
Bytes simulated_drive(Bytes record) {
  record
      .put(0, Bytes::hex("01 01 01 00 01 00 02 00"))  // controller, slot, number, power state, device, enclosure
      .put(8, Bytes::hex("00 00 00 00 00 00 00 00 00 00 00 00"))  // error counts
      .put(20, Bytes::hex("00 00 10"))                            // disabled_for_removal, block_size
      .put(23, Bytes::hex("00 00 00 40 00 00 00 00"))             // raw_size
      .put(31, Bytes::hex("00 00 00 40 00 00 00 00"))             // non_coerced_size
      .put(39, Bytes::hex("00 00 00 40 00 00 00 00"))             // coerced_size
      .put(47, Bytes::hex("03 01 02"))                            // link speed, device type, interface type
      .put_text(50, "ST3300657SS")
      .put_text(67, "SEAGATE")
      .put_text(76, " ")
      .put_text(81, "6SJ3E0QY")
      .put(102, Bytes::hex("00 00 01 00 00"))                 // status, fault, online, temperature
      .put(107, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // rebuild
      .put(117, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // copyback
      .put(127, Bytes::hex("00"))                             // boot_drive
      .put(230, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // patrol read
      .put(240, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // clear
      .put(250, Bytes::hex("00 FF FF FF FF FF FF FF FF FF"))  // erase
      .put(285, Bytes::hex("00 10 00"))                       // physical_block_size, transport_ready
      .put(377, Bytes::hex("00"));                            // pd_sed_state
  return record;
}

// The simulated reply over what the buffer held. Its numbers are little-endian.
Bytes simulated_drives(uint8_t before) {
  const Bytes record = simulated_drive(Bytes::repeated(kDriveSize, before));
  return Bytes::hex("28 00 01 02 00 02 00") + little_endian().u32(kDriveSize).u8(0).fill(8, before) + record + record +
         record;
}

}  // namespace

const SimulatedKind kSimulatedKind = {
    .full = "mc_get_store_phydrives",
    .delta = "mc_delta_store_phydrives",
    .store = kDriveStore,
    .file = drive_file(1, {numbered_drive(0)}),
    .reply = drive_reply(1, {numbered_drive(0)}),
    .quiet_delta = Bytes(),
    .simulation = simulated_drives(kUntouched).slice(0, kAnnouncedLength),
};

namespace {

class DriveSimulation : public DriveTest {
 protected:
  DriveSimulation() { files.write_text("/debug/mctool_storage_debug", ""); }
};

TEST_F(DriveSimulation, AnnouncesTwoDrivesAndWritesThree) {
  trace_at(9);

  const Reply reply = full({.size = 2000, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kAnnouncedLength);
  EXPECT_EQ(reply.buffer, simulated_drives(kUntouched) + Bytes::repeated(2000 - kWrittenLength, kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), "");
}

TEST_F(DriveSimulation, AsksForTheAnnouncedLengthAlone) {
  class Host : public host::ReplyOwner {
   public:
    uint8_t *grow(uint32_t size, uint32_t *available) override {
      asked_for = size;
      *available = size;
      return buffer.data();
    }
    std::vector<uint8_t> buffer = std::vector<uint8_t>(2000, kUntouchedAfterGrowth);
    uint32_t asked_for = 0;
  } host;
  std::vector<uint8_t> small(kAnnouncedLength - 1, kUntouched);
  uint32_t length = 0;

  EXPECT_EQ(PLUGIN(mc_get_store_phydrives)(static_cast<host::ReplyOwner *>(&host), small.data(), kAnnouncedLength - 1,
                                           &length),
            0);

  EXPECT_EQ(host.asked_for, kAnnouncedLength);
  EXPECT_EQ(length, kAnnouncedLength);
  EXPECT_EQ(Bytes(small), Bytes::repeated(kAnnouncedLength - 1, kUntouched));
  EXPECT_EQ(Bytes(host.buffer).slice(0, kWrittenLength), simulated_drives(kUntouchedAfterGrowth));
}

class RefusedDriveSimulation : public DriveSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedDriveSimulation, IsTooLarge) {
  trace_at(3);

  const Reply reply = full({.size = kAnnouncedLength - 1, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "<mc_get_store_phydrives: 1554> [mc_get_store_phydrives]Data length(" +
                         std::to_string(kAnnouncedLength) + ") larger than " +
                         std::to_string(size_after(GetParam(), kAnnouncedLength - 1, kAnnouncedLength)) + "\n");
}

INSTANTIATE_TEST_SUITE_P(, RefusedDriveSimulation, every_refusal());

// ------------------------------------------------------------------------------------------------------ null buffers

class DriveEntryPoints : public DriveTest {};

TEST_F(DriveEntryPoints, TheFullOneLeavesTheLengthAloneWithoutABuffer) {
  trace_at(3);
  uint32_t length = 77;

  EXPECT_EQ(PLUGIN(mc_get_store_phydrives)(nullptr, nullptr, 100, &length), -35);

  EXPECT_EQ(length, 77u);
  EXPECT_EQ(trace(), "<mc_get_store_phydrives: 1537> [mc_get_store_phydrives]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(DriveEntryPoints, TheDeltaOneClearsTheLengthWithoutABuffer) {
  trace_at(3);
  uint32_t length = 77;

  EXPECT_EQ(PLUGIN(mc_delta_store_phydrives)(nullptr, nullptr, 100, &length), -35);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_delta_store_phydrives: 1635> [mc_delta_store_phydrives]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

}  // namespace
}  // namespace tests
