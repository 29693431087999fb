#include <gmock/gmock.h>

#include <cerrno>

#include "host/plugin_test.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/controllers/controller_test.h"
#include "raid/controllers/full_record.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kRoomForAll = 1u << 20;
constexpr auto kProductFile = "/etc/product";

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

class SoManyControllers : public Controllers, public testing::WithParamInterface<size_t> {};

// The 257th lies in the first slot again: the slot follows the count, and the count has eight bits.
TEST_P(SoManyControllers, FillTheSlotsAndWrapTheCount) {
  const std::vector<Controller> controllers = numbered_below(GetParam());
  store(kNotReady, controllers);
  const auto count = static_cast<uint8_t>(GetParam());
  Bytes expected = controller_header(kNotReady, count).fill(kRoomForAll - kControllerHeaderSize, 0xA5);
  for (size_t number = 0; number < controllers.size(); ++number)
    expected.put(kControllerHeaderSize + kControllerSize * (number % 256), controllers[number].reported());

  const Reply reply = full({.size = kRoomForAll});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, controller_reply_size(count));
  EXPECT_TRUE(reply.buffer == expected);
}

INSTANTIATE_TEST_SUITE_P(, SoManyControllers, Values(0, 1, 2, 255, 256, 257, 300));

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

class ControllersOnPlatform : public Controllers, public testing::WithParamInterface<const char *> {};

TEST_P(ControllersOnPlatform, AreNotReadyWhileThereAreNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});

  EXPECT_EQ(full().bytes(), controller_header(kNotReady, 0));
}

TEST_P(ControllersOnPlatform, AreNotReadyInADeltaWhileThereAreNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});

  EXPECT_EQ(delta().bytes(), controller_header(kNotReady, 0));
}

TEST_P(ControllersOnPlatform, AreReadyWhenThereIsOne) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_P(ControllersOnPlatform, AreReadyWhenThereWasOne) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});
  full();
  store(kReady, {}, 2000);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
}

TEST_P(ControllersOnPlatform, AreReadyInADeltaWhenNoneChanged) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});
  full();
  store(kReady, {numbered(0)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_P(ControllersOnPlatform, KeepAnyOtherState) {
  files.write_text(kProductFile, GetParam());
  store(3, {});

  EXPECT_EQ(full().bytes(), controller_header(3, 0));
}

TEST_P(ControllersOnPlatform, AreNotReadyWhenTheirCountWrappedToNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, numbered_below(256));

  EXPECT_EQ(full({.size = kRoomForAll}).bytes(), controller_header(kNotReady, 0));
}

// The reply's state is adjusted, not the one that is remembered.
TEST_P(ControllersOnPlatform, AreComparedWithTheStateOfTheFile) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});
  full();
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ControllersOnPlatform, Values("kestrano", "MORVIK-2"));

TEST_F(Controllers, OnAnyOtherPlatformAreReadyThoughThereAreNone) {
  files.write_text(kProductFile, "tarnika");
  store(kReady, {});

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
}

TEST_F(Controllers, TheSecondPlatformIsNotAskedWhenTheFirstSaysYes) {
  files.write_text(kProductFile, "kestrano");
  store(kReady, {});

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 1);
}

TEST_F(Controllers, BothPlatformsAreAskedWhateverTheReplyHolds) {
  files.write_text(kProductFile, "tarnika");
  store(kNotReady, {numbered(0)});

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 2);
}

TEST_F(Controllers, ThePlatformIsAskedInADeltaToo) {
  files.write_text(kProductFile, "morvik");
  store(kNotReady, {numbered(0)});

  delta();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 2);
}

TEST_F(Controllers, ThePlatformIsNotAskedByADeltaThatEndsEarly) {
  store(0, {numbered(0)});

  delta();

  EXPECT_THAT(calls(), Contains("fread"));
  EXPECT_EQ(number_of_calls("fopen /etc/product"), 0);
}

TEST_F(Controllers, ThePlatformIsAskedOnceInALifetime) {
  files.write_text(kProductFile, "tarnika");
  store(kReady, {});
  full();
  forget_calls();

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 0);
}

TEST_F(Controllers, ThePlatformIsAskedAfterTheRecordsAndBeforeTheReadErrorIsLogged) {
  store(kReady, {numbered(0)});
  fail("fread", 2, EIO);

  full();

  const auto &seen = calls();
  const auto platform = std::ranges::find(seen, "fopen /etc/product");
  const auto log = std::ranges::find(seen, "syslog");
  ASSERT_NE(platform, seen.end());
  ASSERT_NE(log, seen.end());
  EXPECT_LT(platform, log);
  EXPECT_EQ(std::find(platform, seen.end(), "fread"), seen.end());
}

TEST_F(Controllers, WithoutAProductFileBothPlatformsTraceFromTheFirstToTheSecond) {
  store(kReady, {});
  trace_at(3);

  full();

  const std::string no_file =
      "<read_product_file: 180> [read_product_file]fopen(/etc/product) failed: errno 2 (No such file or directory)";
  const std::string no_word = "fscanf on product file gave unexpected value 0: 2 (No such file or directory)";
  EXPECT_EQ(trace(), no_file + "<running_on_kestrano: 203> [running_on_kestrano]" + no_word + no_file +
                         "<running_on_morvik: 224> [running_on_morvik]" + no_word);
}

}  // namespace
}  // namespace tests
