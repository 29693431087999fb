#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "host/plugin_test.h"
#include "raid/raid_names.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

class SasExpanders : public PluginTest {
 protected:
  Reply full(const CallOptions &options = {}) { return call("mc_get_store_sasexpanders", options); }
  Reply delta(const CallOptions &options = {}) { return call("mc_delta_store_sasexpanders", options); }

  std::vector<uint8_t> buffer = std::vector<uint8_t>(200, kUntouched);
  uint32_t length = 77;
};

TEST_F(SasExpanders, AreNoDataInAFullCall) {
  trace_at(9);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_THAT(calls(), ElementsAre("stat /debug/mctool_storage_debug"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(SasExpanders, AreNoDataInADelta) {
  trace_at(9);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(trace(), "");
}

TEST_F(SasExpanders, AreNoDataToRetrieve) {
  files.write_text(kSimulationMarker, "");
  forget_calls();

  EXPECT_EQ(PLUGIN(get_store_sasexpanders)(nullptr, buffer.data(), 200, &length), -37);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(200, kUntouched));
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SasExpanders, AreNoDataToRetrieveWithoutABufferEither) {
  EXPECT_EQ(PLUGIN(get_store_sasexpanders)(nullptr, nullptr, 0, &length), -37);
  EXPECT_EQ(length, 0u);
}

// ------------------------------------------------------------------------------------------------- missing arguments

TEST_F(SasExpanders, AFullCallWithoutABufferClearsTheLength) {
  files.write_text(kSimulationMarker, "");
  trace_at(3);

  EXPECT_EQ(PLUGIN(mc_get_store_sasexpanders)(nullptr, nullptr, 200, &length), -35);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_get_store_sasexpanders: 2764> [mc_get_store_sasexpanders]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(SasExpanders, ADeltaWithoutABufferClearsTheLength) {
  trace_at(3);

  EXPECT_EQ(PLUGIN(mc_delta_store_sasexpanders)(nullptr, nullptr, 200, &length), -35);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_delta_store_sasexpanders: 2826> [mc_delta_store_sasexpanders]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(SasExpanders, AreRefusedWithoutALength) {
  files.write_text(kSimulationMarker, "");

  EXPECT_EQ(PLUGIN(mc_get_store_sasexpanders)(nullptr, buffer.data(), 200, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_get_store_sasexpanders)(nullptr, nullptr, 200, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_delta_store_sasexpanders)(nullptr, buffer.data(), 200, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_delta_store_sasexpanders)(nullptr, nullptr, 200, nullptr), -35);
  EXPECT_EQ(PLUGIN(get_store_sasexpanders)(nullptr, buffer.data(), 200, nullptr), -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(200, kUntouched));
}

// -------------------------------------------------------------------------------------------------------- simulation

// The simulated reply over what the buffer held: 100 bytes, of which 24 are written.
Bytes simulated_expander(uint8_t before) {
  return Bytes::repeated(100, before)
      .put(0, Bytes::hex("00 00 01 54 00 00 00 00"))
      .put(16, Bytes::hex("01 05 02 32 65 14 05 00 65 64 63 62 FF FE FD FC"));
}

class SasExpanderSimulation : public SasExpanders {
 protected:
  SasExpanderSimulation() { files.write_text(kSimulationMarker, ""); }
};

TEST_F(SasExpanderSimulation, IsOneExpander) {
  trace_at(9);

  const Reply reply = full({.size = 200, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 100u);
  EXPECT_EQ(reply.buffer, simulated_expander(kUntouched).fill(100, kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_THAT(calls(), ElementsAre("stat /debug/mctool_storage_debug"));
  EXPECT_EQ(trace(), "");
}

TEST_F(SasExpanderSimulation, FitsExactly) {
  const Reply reply = full({.size = 100, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.bytes(), simulated_expander(kUntouched));
  EXPECT_THAT(reply.requests, IsEmpty());
}

TEST_F(SasExpanderSimulation, AsksForTheByteThatIsMissing) {
  const Reply reply = full({.size = 99});

  EXPECT_THAT(reply.requests, ElementsAre(100u));
  EXPECT_EQ(reply.bytes(), simulated_expander(kUntouched).put(99, Bytes().u8(kUntouchedAfterGrowth)));
}

TEST_F(SasExpanderSimulation, IsNotWhatADeltaReports) {
  const Reply reply = delta();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
}

TEST_F(SasExpanderSimulation, EndsWithItsMarker) {
  full();
  files.remove(kSimulationMarker);

  EXPECT_EQ(full().status, -37);
}

class GrantedSasExpanderSimulation : public SasExpanderSimulation, public testing::WithParamInterface<Growth> {};

TEST_P(GrantedSasExpanderSimulation, IsWrittenToTheBufferThatTheHostReturned) {
  const Reply reply = full({.size = 0, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(100u));
  EXPECT_EQ(reply.bytes(), simulated_expander(kUntouchedAfterGrowth));
}

// The size is set before the host is asked, so one that does not write it has granted it.
INSTANTIATE_TEST_SUITE_P(, GrantedSasExpanderSimulation, Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

// A way to refuse, and the size that is then said to be granted.
using ExpanderRefusal = std::pair<Growth, std::string>;

class RefusedSasExpanderSimulation : public SasExpanderSimulation,
                                     public testing::WithParamInterface<ExpanderRefusal> {};

TEST_P(RefusedSasExpanderSimulation, IsTooLarge) {
  trace_at(3);

  const Reply reply = full({.size = 64, .growth = {GetParam().first}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "<mc_get_store_sasexpanders: 2780> [mc_get_store_sasexpanders]Data length(100) larger than " +
                         GetParam().second + "\n");
}

INSTANTIATE_TEST_SUITE_P(, RefusedSasExpanderSimulation,
                         Values(ExpanderRefusal(Growth::kRefuse, "64"), ExpanderRefusal(Growth::kGrantLess, "99"),
                                ExpanderRefusal(Growth::kNull, "100")));

}  // namespace
}  // namespace tests
