#include "raid/simulation_tests.h"

#include <vector>

#include "host/refusal.h"
#include "raid/bbus/bbu_test.h"
#include "raid/raid_names.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kSimulatedSize = bbu_reply_size(2);

// What is not named here stays as the buffer held it: the texts behind their terminators, and everything from byte 85
// on; of the capacitor also its six unused bytes.
Bytes simulated_start(Bytes record, const char *name, uint8_t capacitor) {
  return record
      .put(0, Bytes::hex("01 01 00 02"))  // controller_index, change_id, status, type
      .put_text(4, name)
      .put_text(12, "LSI")
      .put_text(24, "0000-00-00")
      .put_text(35, " ")
      .put(43, Bytes::hex("00 00 02"))           // serial_number, charging_state
      .put(46, Bytes::hex("03 00 03 00 05 00"))  // design_voltage, voltage, current
      .put(52, Bytes::hex("15"))                 // temperature
      .put(53, Bytes::hex("00 00 00 00 00 FF"))  // flags, learn_mode, learn cycle: status and percent
      .put(59, Bytes::hex("FF FF FF FF FF FF FF FF 00 00 00 00 00"))  // its times, learn_cycle_requested, next one
      .put(72, Bytes().u8(capacitor));
}

Bytes simulated_battery(const Bytes &record) {
  return simulated_start(record, "BBU-0", 0).put(73, Bytes::hex("01 64 64 01 05 00 05 00 05 00 0A 00"));
}

Bytes simulated_capacitor(const Bytes &record) {
  return simulated_start(record, "BBU-1", 1).put(73, Bytes::hex("5A 64 00 5A 00 0A"));
}

// The simulated reply over what the buffer held. The record size is little-endian, too.
Bytes simulated_reply(Bytes buffer) {
  constexpr uint32_t kFirst = bbu_reply_size(0);
  constexpr uint32_t kSecond = bbu_reply_size(1);
  return buffer.put(0, Bytes::hex("28 00 01 02") + little_endian().u32(kBbuSize).u8(0))
      .put(kFirst, simulated_battery(buffer.slice(kFirst, kBbuSize)))
      .put(kSecond, simulated_capacitor(buffer.slice(kSecond, kBbuSize)));
}

Bytes simulated_reply() { return simulated_reply(Bytes::repeated(kSimulatedSize, kUntouched)); }

}  // namespace

const SimulatedKind kSimulatedKind = {
    .full = "mc_get_store_bbu",
    .delta = "mc_delta_store_bbu",
    .store = kBbuStore,
    .file = bbu_file({bbu_of(0)}),
    .reply = bbu_reply({bbu_of(0)}),
    .quiet_delta = bbu_header(0),
    .simulation = simulated_reply(),
};

namespace {

class BbuSimulation : public BbuTest {
 protected:
  BbuSimulation() { files.write_text(kSimulationMarker, ""); }
};

// ------------------------------------------------------------------------------------------------------ the reply

TEST_F(BbuSimulation, MakesUpABatteryAndACapacitor) {
  trace_at(9);

  const Reply reply = full({.size = kSimulatedSize, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_EQ(reply.buffer, simulated_reply());
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// Byte 2 is 1 and byte 3 the count; the record size is in the other byte order.
TEST_F(BbuSimulation, HasAHeaderOfItsOwn) {
  const Reply simulated = full();
  files.remove(kSimulationMarker);
  store(bbus_below(2));

  const Reply real = full();

  const Bytes end = Bytes::hex("00 A5 A5 A5 A5 A5 A5 A5 A5");
  EXPECT_EQ(simulated.bytes().slice(0, 17), Bytes::hex("28 00 01 02") + little_endian().u32(kBbuSize) + end);
  EXPECT_EQ(real.bytes().slice(0, 17), Bytes::hex("28 00 00 02") + big_endian().u32(kBbuSize) + end);
}

TEST_F(BbuSimulation, LeavesTheTimeStampAndTheFlashModulesTextsUnwritten) {
  files.write(kFlashModuleImage, flash_module_image());

  const Reply reply = full();

  EXPECT_EQ(slot(reply, 0).slice(85, kBbuSize - 85), Bytes::repeated(kBbuSize - 85, kUntouched));
  EXPECT_EQ(slot(reply, 1).slice(79, kBbuSize - 79), Bytes::repeated(kBbuSize - 79, kUntouched));
}

TEST_F(BbuSimulation, DoesNotTouchWhatLiesBehindIt) {
  EXPECT_EQ(full({.size = 1000}).buffer, simulated_reply() + Bytes::repeated(1000 - kSimulatedSize, kUntouched));
}

// ------------------------------------------------------------------------------------------------------ growth

TEST_F(BbuSimulation, AsksForTheByteThatIsMissing) {
  const Reply reply = full({.size = kSimulatedSize - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
}

class BbuSimulationGranted : public BbuSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(BbuSimulationGranted, LiesInWhatTheHostReturned) {
  const Reply reply = full({.size = 0, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, kSimulatedSize);
  EXPECT_EQ(reply.buffer, simulated_reply(Bytes::repeated(kSimulatedSize, kUntouchedAfterGrowth)));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
}

INSTANTIATE_TEST_SUITE_P(, BbuSimulationGranted, Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

class BbuSimulationRefused : public BbuSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(BbuSimulationRefused, IsTooLargeForTheSizeThatWasWrittenBack) {
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, GetParam() == Growth::kGrantLess ? Bytes::repeated(kSimulatedSize - 1, kUntouchedAfterGrowth)
                                                           : Bytes::repeated(100, kUntouched));
  EXPECT_THAT(reply.requests, ElementsAre(kSimulatedSize));
  EXPECT_EQ(trace(), "<mc_get_store_bbu: 2481> [mc_get_store_bbu]Data length(" + std::to_string(kSimulatedSize) +
                         ") larger than " + std::to_string(size_after(GetParam(), 100, kSimulatedSize)) + "\n");
}

INSTANTIATE_TEST_SUITE_P(, BbuSimulationRefused, every_refusal());

// A host that looks at the length while it is asked for room.
class CuriousHost : public host::ReplyOwner {
 public:
  uint8_t *grow(uint32_t, uint32_t *available) override {
    length_on_entry = length;
    available_on_entry = *available;
    return buffer.data();
  }

  std::vector<uint8_t> buffer = std::vector<uint8_t>(kSimulatedSize, kUntouched);
  uint32_t length = kUnwrittenLength;
  uint32_t length_on_entry = 0;
  uint32_t available_on_entry = 0;
};

TEST_F(BbuSimulation, TellsItsLengthBeforeItAsks) {
  CuriousHost host;

  PLUGIN(mc_get_store_bbu)(static_cast<host::ReplyOwner *>(&host), host.buffer.data(), 100, &host.length);

  EXPECT_EQ(host.length_on_entry, kSimulatedSize);
  EXPECT_EQ(host.available_on_entry, kSimulatedSize);
}

// ------------------------------------------------------------------------------------------------------ what it leaves

// With a buffer that is large enough, and with one that is not and may not grow.
class BbuSimulationBetween : public BbuSimulation, public testing::WithParamInterface<uint32_t> {
 protected:
  BbuSimulationBetween() {
    files.remove(kSimulationMarker);
    remember({bbu_of(0)});
    files.write_text(kSimulationMarker, "");
  }

  void simulate() { full({.size = GetParam(), .growth = {Growth::kRefuse}}); }
};

TEST_P(BbuSimulationBetween, KeepsTheTimeOfTheStoreFile) {
  simulate();

  EXPECT_EQ(delta().length, 0u);
}

TEST_P(BbuSimulationBetween, KeepsTheLists) {
  simulate();
  store({bbu_of(0), bbu_of(1)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1)}));
}

INSTANTIATE_TEST_SUITE_P(, BbuSimulationBetween, Values(65536, 100));

}  // namespace
}  // namespace tests
