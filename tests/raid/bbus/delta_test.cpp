#include <gmock/gmock.h>

#include <cerrno>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

class BbuDelta : public BbuTest {};

// ------------------------------------------------------------------------------------------------ what is reported

TEST_F(BbuDelta, AnUnchangedFileIsAnsweredAtOnceWithNothing) {
  remember({bbu_of(0)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, 0xA5));
  EXPECT_THAT(calls(), AllOf(Contains("flock 8"), Not(Contains("fread"))));
}

TEST_F(BbuDelta, ATimeThatDidNotMoveHidesEveryChange) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2), bbu_of(1)}, 1000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(BbuDelta, TheFirstOneReportsThemAll) {
  store(bbus_below(3));

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply(bbus_below(3)));
}

TEST_F(BbuDelta, AFileFromTimeZeroIsUnchangedFromTheStart) {
  store({bbu_of(0)}, 0);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(BbuDelta, AnOlderFileIsAChangedFile) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 999);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 2)}));
}

TEST_F(BbuDelta, TimesAreComparedInAllTheir64Bits) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 1000 + (int64_t{1} << 32));

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 2)}));
}

TEST_F(BbuDelta, ReportsTheOneWhoseStampMoved) {
  remember(bbus_below(3));
  store({bbu_of(0), bbu_of(1, 0x01020304), bbu_of(2)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1, 0x01020304)}));
}

TEST_F(BbuDelta, AStampThatWentBackIsAModification) {
  remember({bbu_of(0, 5)});
  store({bbu_of(0, 4)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 4)}));
}

TEST_F(BbuDelta, ComparesEveryByteOfAStamp) {
  for (const uint32_t bit : {0u, 8u, 16u, 31u}) {
    remember({bbu_of(0, 0)});
    store({bbu_of(0, 1u << bit)}, 2000);

    EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 1u << bit)})) << bit;
  }
}

TEST_F(BbuDelta, ComparesNothingButTheStamp) {
  remember({bbu_of(2)});
  Bbu other = bbu_of(2);
  other.name = "other";
  other.serial = 0x7777;
  other.capacitor = 0;
  store({other}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_header(0));
}

TEST_F(BbuDelta, ReportsANewBbu) {
  remember({bbu_of(1)});
  store({bbu_of(0), bbu_of(1), bbu_of(2)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0), bbu_of(2)}));
}

TEST_F(BbuDelta, ABbuThatMovedToAnotherControllerIsNew) {
  remember({bbu_of(1)});
  Bbu moved = bbu_of(1);
  moved.controller = 2;
  store({moved}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({moved}));
}

TEST_F(BbuDelta, OfAnotherOrderOfRecordsIsAHeaderAlone) {
  remember({bbu_of(0), bbu_of(1)});
  store({bbu_of(1), bbu_of(0)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_header(0));
}

TEST_F(BbuDelta, WithoutNewsHas17Bytes) {
  remember(bbus_below(3));
  store(bbus_below(3), 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 17u);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
}

TEST_F(BbuDelta, ReportsNoGoneBbu) {
  remember(bbus_below(3));
  store({bbu_of(1)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(slot(reply, 1), untouched_bbu_slot());
}

TEST_F(BbuDelta, ReportsNothingWhenAllAreGone) {
  remember(bbus_below(3));
  store({}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(slot(reply, 0), untouched_bbu_slot());
}

TEST_F(BbuDelta, ABbuThatComesBackIsNew) {
  remember({bbu_of(0), bbu_of(1)});
  store({bbu_of(0)}, 2000);
  delta();
  store({bbu_of(0), bbu_of(1)}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1)}));
}

TEST_F(BbuDelta, ReadsTheNextRecordOverOneThatIsNotReported) {
  remember(bbus_below(3));
  store({bbu_of(0), bbu_of(1, 2), bbu_of(2)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(1, 2)}));
  EXPECT_EQ(slot(reply, 1), bbu_of(2).stored());
  EXPECT_EQ(slot(reply, 2), untouched_bbu_slot());
}

TEST_F(BbuDelta, TakesTheFlashModulesTextsOnlyForWhatItReports) {
  remember(bbus_below(3));
  files.write(kFlashModuleImage, flash_module_image());
  store({bbu_of(0), bbu_of(1, 2), bbu_of(2)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), bbu_header(1) + with_flash_module(bbu_of(1, 2).reported()));
  EXPECT_EQ(number_of_calls("fopen /var/log/TFM_FRU.bin"), 1);
  EXPECT_EQ(slot(reply, 1), bbu_of(2).stored());
}

TEST_F(BbuDelta, TheFirstOfTwoRememberedForAControllerDecides) {
  remember({bbu_of(1, 7), bbu_of(1, 8)});
  store({bbu_of(1, 8), bbu_of(1, 7)}, 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1, 8)}));
}

// ------------------------------------------------------------------------------------------------ what is remembered

TEST_F(BbuDelta, ComparesWithThePreviousDelta) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 2000);
  delta();
  store({bbu_of(0, 2), bbu_of(1)}, 3000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1)}));
}

TEST_F(BbuDelta, ComparesWithAFullCallInBetween) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 2000);
  full();
  EXPECT_EQ(delta().length, 0u);

  store({bbu_of(0, 2)}, 3000);
  EXPECT_EQ(delta().bytes(), bbu_header(0));
}

TEST_F(BbuDelta, AFailureToLockLeavesTheBaseline) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 2000);
  fail("flock", 1, EINTR);
  EXPECT_EQ(delta().status, -35);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 2)}));
}

TEST_F(BbuDelta, ARefusedGrowthMovesTheTimeAndNothingElse) {
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 2000);
  EXPECT_EQ(delta({.size = 8, .growth = {Growth::kRefuse}}).status, -13);
  EXPECT_EQ(delta().length, 0u);

  store({bbu_of(0, 2)}, 3000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0, 2)}));
}

TEST_F(BbuDelta, WhatAReadErrorHidIsNewTheNextTime) {
  remember({bbu_of(0), bbu_of(1)});
  store({bbu_of(0), bbu_of(1)}, 2000);
  fail("fread", 2, EIO);
  EXPECT_EQ(delta().bytes(), bbu_header(0));

  store({bbu_of(0), bbu_of(1)}, 3000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1)}));
}

TEST_F(BbuDelta, StartsFromNothingWhenThePlugInIsLoadedAgain) {
  remember({bbu_of(0)});
  unload();
  load();

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0)}));
}

}  // namespace
}  // namespace tests
