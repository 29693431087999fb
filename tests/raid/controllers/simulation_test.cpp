#include "raid/simulation_tests.h"

#include <vector>

#include "raid/controllers/controller_test.h"
#include "raid/raid_names.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kSimulatedSize = controller_reply_size(2);
constexpr uint32_t kLarge = kSimulatedSize + 400;

// What is not named here stays as the buffer held it.
Bytes simulated_record(uint8_t index, Bytes record) {
  record.put(0, Bytes().u8(index))
      .put_text(1, index == 0 ? "SLOT-0" : "SLOT-1")
      .put_text(23, "LSI MegaRAID SAS 9266-8i")
      .put(104, Bytes::hex("01 01 00"))  // supported, reason, status
      .put_text(107, "SR136P0796")
      .put_text(235, "LSI Logic")
      .put(255, Bytes::hex("00 00 00 00 00 00 00 00"))  // ids
      .put_text(263, "Re")
      .put_text(266, "01/01/2013")
      .put_text(277, " ")   // mfg_rework_date
      .put_text(288, " ")   // mfg_revision_num
      .put_text(297, " ")   // bios_version
      .put_text(330, " ")   // firmware_version
      .put_text(363, " ")   // preboot_cli_version
      .put_text(396, " ")   // webbios_version
      .put_text(429, " ")   // nvdata_version
      .put_text(462, " ")   // boot_block_version
      .put_text(495, " ");  // boot_version
  record
      .put(759, Bytes::hex("05 00"))           // predictive_fail_poll_interval
      .put(761, Bytes::hex("37 42 2C 2C"))     // rates: rebuild, patrol read, consistency check, reconstruction
      .put(765, Bytes::hex("05 04 00 05 00"))  // cache_flush_interval, spinup_drive_count, spinup_delay
      .put(770, Bytes::hex("00 00"))           // coercion_mode, cluster_enable
      .put(772, Bytes::hex("03 00"))           // ecc_bucket_leak_rate
      .put(774, Bytes::hex("00 00 00 00 00"))  // expose_enclosure_devices to disable_ncq
      .put(779, Bytes::hex("01 01"))           // spin_down_unconfigured, enable_ssd_patrol_read
      .put(782, Bytes::hex("FF FF 00 00"))     // raid_levels_supported
      .put(786, Bytes::hex("00 00 01 01"))     // presence of NVRAM, serial debugger, memory, flash
      .put(790, Bytes::hex("FF FF FF FF 00 00 00 00"))  // memory_size
      .put(798, Bytes::hex("00 04 00 00 00 00 00 00"))  // cache_memory_size
      .put(806, Bytes::hex("00 00 00 00 00"))           // backend_port_count, memory errors
      .put(811, Bytes::hex("00 00 00 12 12"))           // sensors, temperatures
      .put(816, Bytes::hex("00 FF"))                    // patrol_read_operation_status, patrol_read_percent_complete
      .put(818, Bytes::hex("FF FF FF FF FF FF FF FF"))  // patrol_read_start_timestamp, patrol_read_end_timestamp
      .put(826, Bytes::hex("00"))                       // has_sas_expander
      .put(831, Bytes::hex("FF 00 00"))                 // sub_oem, pinned_cache_state, controller_type
      .put(834, Bytes::hex("01 00 00 00 00 00 00 00"))  // supported_strip_sizes
      .put(842, Bytes::hex("01 00 00 00 00 00 00 00"))  // default_strip_size
      .put(866, Bytes::hex("01 00 00 00 00 00 00 00"))  // supported_ctlr_ops
      .put(874, Bytes::hex("01 00 00 00 00 00 00 00"))  // supported_phys_ops
      .put(882, Bytes::hex("01 00 00 00 00 00 00 00"))  // supported_virt_ops
      .put(890, Bytes::hex("01 00"))                    // supported_bbu_ops
      .put(892, Bytes::hex("01 00 00 00 00 00 00 00"))  // valid_controller_attrs
      .put_text(900, "Optimal")
      .put(964, Bytes::hex("FF 00"))    // drive_life_used_percent, controller_sed_status
      .put(1292, Bytes::hex("FF FF"));  // life_left_in_days
  return record;
}

// The simulated reply over what the buffer held. The record size is little-endian, too.
Bytes simulated_reply(Bytes buffer) {
  constexpr uint32_t kFirst = controller_reply_size(0);
  constexpr uint32_t kSecond = controller_reply_size(1);
  return buffer.put(0, Bytes::hex("28 00 00 02 02") + little_endian().u32(kControllerSize).u8(0))
      .put(kFirst, simulated_record(0, buffer.slice(kFirst, kControllerSize)))
      .put(kSecond, simulated_record(1, buffer.slice(kSecond, kControllerSize)));
}

Bytes simulated_reply() { return simulated_reply(Bytes::repeated(kSimulatedSize, kUntouched)); }

}  // namespace

const SimulatedKind kSimulatedKind = {
    .full = "mc_get_store_ctrls",
    .delta = "mc_delta_store_ctrls",
    .store = kControllerStore,
    .file = controller_file(kReady, {numbered(0)}),
    .reply = controller_reply(kReady, {numbered(0)}),
    .quiet_delta = controller_header(kReady, 0),
    .simulation = simulated_reply(),
};

namespace {

std::string simulation_too_large(uint32_t granted) {
  return "<mc_get_store_ctrls: 1114> [mc_get_store_ctrls]Data length(" + std::to_string(kSimulatedSize) +
         ") larger than " + std::to_string(granted) + "\n";
}

class Simulation : public ControllerTest {
 protected:
  Simulation() { files.write_text(kSimulationMarker, ""); }
};

// ------------------------------------------------------------------------------------------------------ the reply

TEST_F(Simulation, MakesUpTwoControllers) {
  trace_at(9);

  const Reply reply = full({.size = kSimulatedSize, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_EQ(reply.buffer, simulated_reply());
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(Simulation, DoesNotTouchWhatLiesBehindIt) {
  const Reply reply = full({.size = kLarge});

  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_EQ(reply.buffer, simulated_reply() + Bytes::repeated(kLarge - kSimulatedSize, kUntouched));
}

// ------------------------------------------------------------------------------------------------------ growth

TEST_F(Simulation, AsksForTheByteThatIsMissing) {
  const Reply reply = full({.size = kSimulatedSize - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_EQ(reply.buffer, simulated_reply(Bytes::repeated(kSimulatedSize - 1, kUntouched).u8(kUntouchedAfterGrowth)));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
}

TEST_F(Simulation, AsksForAllOfTheBuffer) {
  const Reply reply = full({.size = 0});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.buffer, simulated_reply(Bytes::repeated(kSimulatedSize, kUntouchedAfterGrowth)));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
}

TEST_F(Simulation, IsTooLargeWhenTheHostRefuses) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(100, kUntouched));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
  EXPECT_EQ(trace(), simulation_too_large(100));
}

TEST_F(Simulation, IsTooLargeWhenTheHostGrantsLess) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {Growth::kGrantLess}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(kSimulatedSize - 1, kUntouchedAfterGrowth));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
  EXPECT_EQ(trace(), simulation_too_large(kSimulatedSize - 1));
}

// A host whose buffer moves, while the old one stays valid: only that is safe here.
class MovingHost : public host::ReplyOwner {
 public:
  uint8_t *grow(uint32_t size, uint32_t *available) override {
    asked_for = size;
    available_on_entry = *available;
    length_on_entry = length;
    if (granted != 0) *available = granted;
    return answer;
  }

  std::vector<uint8_t> passed_in = std::vector<uint8_t>(kLarge, kUntouched);
  std::vector<uint8_t> moved_to = std::vector<uint8_t>(kLarge, kUntouchedAfterGrowth);
  uint8_t *answer = moved_to.data();
  uint32_t granted = kSimulatedSize;  // 0: the host does not say
  uint32_t length = kUnwrittenLength;

  uint32_t asked_for = 0;
  uint32_t available_on_entry = 0;
  uint32_t length_on_entry = 0;
};

class SimulationForMovingHost : public Simulation {
 protected:
  int32_t simulate() {
    return PLUGIN(mc_get_store_ctrls)(static_cast<host::ReplyOwner *>(&host), host.passed_in.data(), 100, &host.length);
  }

  Bytes passed_in() const { return Bytes(host.passed_in); }
  Bytes moved_to() const { return Bytes(host.moved_to); }

  MovingHost host;
};

const Bytes kSimulatedInLarge = simulated_reply() + Bytes::repeated(kLarge - kSimulatedSize, kUntouched);

TEST_F(SimulationForMovingHost, GoesToTheBufferThatWasPassedIn) {
  const int32_t status = simulate();

  EXPECT_EQ(status, 0);
  EXPECT_EQ(host.length, kSimulatedSize);
  EXPECT_EQ(passed_in(), kSimulatedInLarge);
  EXPECT_EQ(moved_to(), Bytes::repeated(kLarge, kUntouchedAfterGrowth));
}

TEST_F(SimulationForMovingHost, DoesNotMindANullResult) {
  host.answer = nullptr;

  const int32_t status = simulate();

  EXPECT_EQ(status, 0);
  EXPECT_EQ(host.length, kSimulatedSize);
  EXPECT_EQ(passed_in(), kSimulatedInLarge);
}

TEST_F(SimulationForMovingHost, TakesSilenceForConsent) {
  host.granted = 0;

  const int32_t status = simulate();

  EXPECT_EQ(status, 0);
  EXPECT_EQ(passed_in(), kSimulatedInLarge);
}

TEST_F(SimulationForMovingHost, MayBeGrantedMore) {
  host.granted = 5000;

  const int32_t status = simulate();

  EXPECT_EQ(status, 0);
  EXPECT_EQ(host.length, kSimulatedSize);
  EXPECT_EQ(passed_in(), kSimulatedInLarge);
}

TEST_F(SimulationForMovingHost, TellsItsLengthBeforeItAsks) {
  simulate();

  EXPECT_EQ(host.asked_for, kSimulatedSize);
  EXPECT_EQ(host.available_on_entry, kSimulatedSize);
  EXPECT_EQ(host.length_on_entry, kSimulatedSize);
}

// ------------------------------------------------------------------------------------------------------ what it leaves

TEST_F(Simulation, RemembersNothingWhenItIsTooLarge) {
  store(kReady, {numbered(0)});
  full({.size = 100, .growth = {Growth::kRefuse}});

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

// With a buffer that is large enough, and with one that is not and may not grow.
class SimulationBetween : public Simulation, public testing::WithParamInterface<uint32_t> {
 protected:
  SimulationBetween() {
    files.remove(kSimulationMarker);
    store(kReady, {numbered(0), numbered(1)});
    full();
    files.write_text(kSimulationMarker, "");
  }

  void simulate() { full({.size = GetParam(), .growth = {Growth::kRefuse}}); }
};

TEST_P(SimulationBetween, KeepsTheTimeOfTheStoreFile) {
  simulate();

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

// The gone one lies where the one that stayed was read, and shows through.
TEST_P(SimulationBetween, KeepsTheListsAndTheState) {
  simulate();
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1) + gone(numbered(1), numbered(0).stored()));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, SimulationBetween, Values(65536, 100));

}  // namespace
}  // namespace tests
