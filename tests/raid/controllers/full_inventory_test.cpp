#include <gmock/gmock.h>

#include <cerrno>

#include "raid/controllers/controller_test.h"
#include "raid/controllers/full_record.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

class Controllers : public ControllerTest {};

TEST_F(Controllers, FullInventoryIsBigEndian) {
  const Controller controller{.index = 3, .stamp = 0x01020304};
  files.write(kControllerStore, Bytes().u8(1) + controller.stored());

  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_header(1, 1) + controller.reported());
}

TEST_F(Controllers, EveryFieldIsConvertedOrCopied) {
  files.write(kControllerStore, Bytes().u8(1) + full_controller_record(Bytes::Order::kLittle));

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_header(1, 1) + full_controller_record(Bytes::Order::kBig));
}

TEST_F(Controllers, RecordsStandInTheOrderOfTheFile) {
  store(kReady, {numbered(7), numbered(2), numbered(5)});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(7), numbered(2), numbered(5)}));
}

TEST_F(Controllers, WhatLiesBehindTheReplyIsNotTouched) {
  store(kReady, {numbered(0)});

  const Reply reply = full({.size = 4000});

  EXPECT_EQ(reply.buffer, controller_reply(kReady, {numbered(0)}).fill(4000 - controller_reply_size(1), 0xA5));
}

TEST_F(Controllers, AFullInventoryComesAgainThoughNothingChanged) {
  store(kReady, {numbered(0)});
  full();

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(Controllers, AreReadAndDumpedUnderTheLock) {
  store(kReady, {numbered(0)});
  files.write_text("/var/mctool_ctlrdebug", "");
  std::vector<bool> is_free;
  const auto look = [&] { is_free.push_back(files.is_unlocked(kControllerStore)); };
  before_call("fread", 1, look);
  before_call("fread", 3, look);
  before_call("fopen", 6, look);  // after the store, twice the product file, and two of the three lists

  full();

  EXPECT_THAT(is_free, ElementsAre(false, false, false));
}

TEST_F(Controllers, AChangedStateIsNoNewsInAFullInventory) {
  store(kReady, {numbered(0)});
  full();
  store(kNotReady, {numbered(0, 2)}, 2000);

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_reply(kNotReady, {numbered(0, 2)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

class ControllersInState : public Controllers, public testing::WithParamInterface<uint8_t> {};

TEST_P(ControllersInState, ReportsTheStateAsItIsInTheFile) {
  store(GetParam(), {numbered(0)});

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_reply(GetParam(), {numbered(0)}));
}

INSTANTIATE_TEST_SUITE_P(, ControllersInState, Values(0, 1, 2, 3, 0x80, 0xFF));

TEST_F(Controllers, APartialRecordAtTheEndIsLeftInItsSlotAndNotReported) {
  files.write(kControllerStore, controller_file(kReady, {numbered(0)}).fill(kControllerSize - 1, 0x77));

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_EQ(slot(reply, 1), Bytes().fill(kControllerSize - 1, 0x77).fill(1, 0xA5));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(Controllers, AFileWithoutRecordsIsAHeaderAlone) {
  files.write(kControllerStore, Bytes().u8(3));

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 18u);
  EXPECT_EQ(reply.bytes(), controller_header(3, 0));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(Controllers, AnEmptyFileIsNoData) {
  files.write(kControllerStore, Bytes());
  trace_at(9);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(Controllers, AMissingFileIsNoDataAndLeavesNoTrace) {
  trace_at(9);

  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "");
}

TEST_F(Controllers, AnUnreadableStateIsNoData) {
  store(kReady, {numbered(0)});
  fail("fread", 1, EIO);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

// Looking for the product file, which is not there, changes errno before the line is written.
TEST_F(Controllers, AReadErrorEndsTheReplyAndIsLoggedWithItsReason) {
  store(kReady, numbered_below(3));
  use_cmclog = 1;  // which is about the trace alone
  fail("fread", 3, EIO);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), ElementsAre(read_error("Input/output error")));
}

TEST_F(Controllers, AReadErrorAtTheFirstRecordLeavesAHeaderAlone) {
  store(kReady, {numbered(0)});
  fail("fread", 2, ESTALE);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 0));
  EXPECT_THAT(system_log(), ElementsAre(read_error("Stale file handle")));
}

TEST_F(Controllers, AReadErrorBehindTheLastRecordIsLogged) {
  store(kReady, {numbered(0)});
  fail("fread", 3, EIO);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), ElementsAre(read_error("Input/output error")));
}

TEST_F(Controllers, ARefusedGrowthIsReplyTooLarge) {
  files.write(kControllerStore, Bytes().u8(1) + Controller().stored());
  trace_at(3);

  const Reply reply = call("mc_get_store_ctrls", {.size = 8, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), too_large(controller_room(1)));
}

}  // namespace
}  // namespace tests
