#include <gmock/gmock.h>

#include <cerrno>

#include "raid/controllers/controller_test.h"
#include "raid/raid_names.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

class ControllerEntryPoints : public ControllerTest {
 protected:
  int32_t call_full(uint8_t *buf, uint32_t size, uint32_t *len) {
    return PLUGIN(mc_get_store_ctrls)(nullptr, buf, size, len);
  }
  int32_t call_delta(uint8_t *buf, uint32_t size, uint32_t *len) {
    return PLUGIN(mc_delta_store_ctrls)(nullptr, buf, size, len);
  }

  uint32_t length = kUnwrittenLength;
};

// ------------------------------------------------------------------------------------------------------ null arguments

TEST_F(ControllerEntryPoints, FullWithoutABufferLeavesTheLengthAlone) {
  store(kReady, {numbered(0)});
  trace_at(3);

  const int32_t status = call_full(nullptr, 65536, &length);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(length, kUnwrittenLength);
  EXPECT_EQ(trace(), "<mc_get_store_ctrls: 1093> [mc_get_store_ctrls]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(ControllerEntryPoints, TheRetrievalWithoutALengthIsRefused) {
  store(kReady, {numbered(0)});
  uint8_t buffer[64];

  EXPECT_EQ(PLUGIN(get_store_ctrls)(nullptr, buffer, sizeof buffer, nullptr, 0), -35);

  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ControllerEntryPoints, FullWithoutABufferDoesNotSimulate) {
  files.write_text(kSimulationMarker, "");

  const int32_t status = call_full(nullptr, 65536, &length);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(length, kUnwrittenLength);
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ControllerEntryPoints, DeltaWithoutABufferClearsTheLength) {
  store(kReady, {numbered(0)});
  trace_at(3);

  const int32_t status = call_delta(nullptr, 65536, &length);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_delta_store_ctrls: 1225> [mc_delta_store_ctrls]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(ControllerEntryPoints, WithoutABufferRememberNothing) {
  store(kReady, {numbered(0)});
  call_full(nullptr, 65536, &length);
  call_delta(nullptr, 65536, &length);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(ControllerEntryPoints, WithoutALengthAreRefusedAndRememberNothing) {
  store(kReady, {numbered(0)});
  std::vector<uint8_t> buffer(4000, kUntouched);

  const int32_t full_status = call_full(buffer.data(), 4000, nullptr);
  const int32_t delta_status = call_delta(buffer.data(), 4000, nullptr);

  EXPECT_EQ(full_status, -35);
  EXPECT_EQ(delta_status, -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(4000, kUntouched));
  EXPECT_EQ(number_of_calls("fopen /var/storctlr_info"), 0);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(ControllerEntryPoints, FullWithoutALengthDoesNotSimulate) {
  files.write_text(kSimulationMarker, "");
  std::vector<uint8_t> buffer(4000, kUntouched);

  const int32_t status = call_full(buffer.data(), 4000, nullptr);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(4000, kUntouched));
}

TEST_F(ControllerEntryPoints, WithoutBufferAndLengthAreRefused) {
  EXPECT_EQ(call_full(nullptr, 0, nullptr), -35);
  EXPECT_EQ(call_delta(nullptr, 0, nullptr), -35);
}

// ------------------------------------------------------------------------------------------------------ modes

TEST_F(ControllerEntryPoints, FullLooksForTheMarkerThenReadsTheStoreFile) {
  store(kReady, {numbered(0)});

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  ASSERT_GE(calls().size(), 2u);
  EXPECT_EQ(calls()[0], "stat /debug/mctool_storage_debug");
  EXPECT_EQ(calls()[1], "fopen /var/storctlr_info");
}

TEST_F(ControllerEntryPoints, DeltaReportsWhatChangedAndFullEverything) {
  store(kReady, {numbered(0), numbered(1)});
  full();
  store(kReady, {numbered(0), numbered(1, 2)}, 2000);

  const Reply changed = delta();
  const Reply everything = full();
  const Reply unchanged = delta();

  EXPECT_EQ(changed.bytes(), controller_reply(kReady, {numbered(1, 2)}));
  EXPECT_EQ(everything.bytes(), controller_reply(kReady, {numbered(0), numbered(1, 2)}));
  EXPECT_EQ(unchanged.status, 0);
  EXPECT_EQ(unchanged.length, 0u);
}

TEST_F(ControllerEntryPoints, DeltaNeverSimulates) {
  store(kReady, {numbered(0)});
  files.write_text(kSimulationMarker, "");

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_EQ(number_of_calls("stat /debug/mctool_storage_debug"), 0);
}

class EitherControllerEntryPoint : public ControllerTest, public testing::WithParamInterface<const char *> {};

TEST_P(EitherControllerEntryPoint, PassesOnThatThereIsNoData) {
  const Reply reply = call(GetParam());

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

TEST_P(EitherControllerEntryPoint, PassesOnThatTheFileIsUnavailable) {
  store(kReady, {numbered(0)});
  fail("flock", 1, EIO);

  const Reply reply = call(GetParam());

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

TEST_P(EitherControllerEntryPoint, PassesOnThatTheReplyIsTooLarge) {
  store(kReady, {numbered(0)});

  const Reply reply = call(GetParam(), {.size = 100, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(100, kUntouched));
}

TEST_P(EitherControllerEntryPoint, PassesOnTheBufferAndItsSize) {
  store(kReady, {numbered(0)});

  const Reply with_room = call(GetParam(), {.size = controller_room(1), .growth = {Growth::kRefuse}});

  EXPECT_EQ(with_room.status, 0);
  EXPECT_THAT(with_room.requests, IsEmpty());
  EXPECT_EQ(with_room.buffer, controller_reply(kReady, {numbered(0)}).u8(kUntouched));
}

TEST_P(EitherControllerEntryPoint, LetsTheHostGrowTheBuffer) {
  store(kReady, {numbered(0)});

  const Reply reply = call(GetParam(), {.size = 0, .growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(controller_room(1)));
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1, kUntouchedAfterGrowth) + numbered(0).reported());
}

INSTANTIATE_TEST_SUITE_P(, EitherControllerEntryPoint, Values("mc_get_store_ctrls", "mc_delta_store_ctrls"));

}  // namespace
}  // namespace tests
