#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "host/plugin_test.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

std::string state_changed(const std::string &details) {
  return "mcserver_storage.cpp:893:Storage subsystem state changed, " + details + "\n";
}

std::string changed_with_the_state(const std::string &details) {
  return "mcserver_storage.cpp:989:Storage subsystem state changed, " + details + "\n";
}

// The times of most tests here, with their texts.
const std::string kTime0 = "0, Thu Jan  1 00:00:00 1970\n";
const std::string kTime1000 = "1000, Thu Jan  1 00:16:40 1970\n";
const std::string kTime2000 = "2000, Thu Jan  1 00:33:20 1970\n";
const std::string kTime3000 = "3000, Thu Jan  1 00:50:00 1970\n";

class DeltaControllers : public ControllerTest {
 protected:
  // What a full call leaves: state 2, at 1000 seconds.
  void remember(const std::vector<Controller> &controllers, uint8_t state = kReady) {
    store(state, controllers);
    ASSERT_EQ(full().status, 0);
    forget_calls();
  }

  // The routine behind both entry points.
  Reply retrieve(int32_t mode) {
    HostReplyBuffer buffer(65536, {Growth::kRefuse});
    Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
    reply.status = PLUGIN(get_store_ctrls)(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(),
                                           &reply.length, mode);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    return reply;
  }
};

// ------------------------------------------------------------------------------------------------ what is reported

TEST_F(DeltaControllers, AnUnchangedFileIsAnsweredAtOnceWithNothing) {
  remember({numbered(0)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, 0xA5));
  EXPECT_THAT(calls(), Not(Contains("fread")));
}

// The low 32 bits of these times are alike.
TEST_F(DeltaControllers, ATimeAfter2038IsNotTakenForOneBefore) {
  remember({numbered(0)});

  store(kReady, {numbered(0, 2)}, 1000 + (int64_t{1} << 32));
  const Reply after = delta();
  store(kReady, {numbered(0, 3)}, 1000);
  const Reply before = delta();

  EXPECT_EQ(after.bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_EQ(before.bytes(), controller_reply(kReady, {numbered(0, 3)}));
}

TEST_F(DeltaControllers, ATimeThatDidNotMoveHidesEveryChange) {
  remember({numbered(0)});
  store(kNotReady, {numbered(0, 2), numbered(1)}, 1000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(DeltaControllers, TheFirstDeltaReportsThemAll) {
  store(kReady, {numbered(0), numbered(1)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0), numbered(1)}));
}

TEST_F(DeltaControllers, AFileFromTimeZeroIsUnchangedFromTheStart) {
  files.write(kControllerStore, controller_file(kReady, {numbered(0)}), 0);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DeltaControllers, AnOlderFileIsAChangedFile) {
  remember({numbered(0)});
  store(kReady, {numbered(0, 2)}, 999);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(DeltaControllers, TimesAreComparedInAllTheir64Bits) {
  remember({numbered(0)});
  store(kReady, {numbered(0, 2)}, 1000 + (int64_t{1} << 32));

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(DeltaControllers, ReportsTheOneWhoseStampMoved) {
  remember({numbered(0), numbered(1), numbered(2)});
  store(kReady, {numbered(0), numbered(1, 0x01020304), numbered(2)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(1, 0x01020304)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(DeltaControllers, AStampThatWentBackIsAModification) {
  remember({numbered(0, 5)});
  store(kReady, {numbered(0, 4)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 4)}));
}

TEST_F(DeltaControllers, NoOtherFieldThanTheStampCounts) {
  remember({numbered(0)});
  Controller renamed = numbered(0);
  renamed.name = "RENAMED";
  renamed.vendor_id = 0x1234;
  renamed.type = 9;
  store(kReady, {renamed}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_F(DeltaControllers, ReportsTheNewOne) {
  remember({numbered(0)});
  store(kReady, {numbered(1), numbered(0)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1)}));
}

TEST_F(DeltaControllers, WhatWasReportedOnceIsNotReportedAgain) {
  remember({numbered(0)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  delta();
  store(kReady, {numbered(0, 2), numbered(1)}, 3000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_F(DeltaControllers, ATouchedFileIsAHeaderAlone) {
  remember({numbered(0)});
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 18u);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 0));
}

// It was read into the slot, found to be known, and never converted.
TEST_F(DeltaControllers, AnUnreportedRecordStaysInTheSlotItWasReadInto) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_EQ(slot(reply, 1), numbered(1).stored());
  EXPECT_EQ(slot(reply, 2), untouched_slot());
}

TEST_F(DeltaControllers, IsDumpedThoughItIsNotReported) {
  remember({numbered(0)});
  store(kReady, {numbered(0)}, 2000);
  files.write_text("/var/mctool_stordebug", "");

  delta();

  EXPECT_THAT(files.read("/var/mctool_stordebug.txt"), HasSubstr("controller: SLOT-0\n"));
}

TEST_F(DeltaControllers, IsDumpedBeforeItIsConverted) {
  store(kReady, {numbered(0)});
  files.write_text("/var/mctool_stordebug", "");

  delta();

  EXPECT_THAT(files.read("/var/mctool_stordebug.txt"), HasSubstr("device-id: 0x5d\n"));
}

// ------------------------------------------------------------------------------------------------------- the mode

TEST_F(DeltaControllers, ModeZeroIsTheFullInventory) {
  remember({numbered(0)});

  const Reply reply = retrieve(0);

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

class AnyOtherMode : public DeltaControllers, public testing::WithParamInterface<int32_t> {};

TEST_P(AnyOtherMode, EndsAtAnUnchangedTime) {
  remember({numbered(0)});

  const Reply reply = retrieve(GetParam());

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

TEST_P(AnyOtherMode, ReportsWhatChangedAndWhatIsGone) {
  remember({numbered(0), numbered(1), numbered(2)});
  store(kNotReady, {numbered(0), numbered(1, 2)}, 2000);

  const Reply reply = retrieve(GetParam());

  EXPECT_EQ(reply.bytes(),
            controller_header(kNotReady, 2) + numbered(1, 2).reported() + gone(numbered(2), untouched_slot()));
  EXPECT_EQ(system_log().size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(, AnyOtherMode, Values(1, 2, -1, INT32_MIN));

// ------------------------------------------------------------------------------------------------------ the state

class UnchangedState : public DeltaControllers, public testing::WithParamInterface<uint8_t> {};

TEST_P(UnchangedState, OtherThanTwoReportsNothingWhateverChanged) {
  remember({numbered(0), numbered(1)}, GetParam());
  store(GetParam(), {numbered(0, 2)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, 0xA5));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, UnchangedState, Values(0, 1, 3, 255));

TEST_F(DeltaControllers, AFirstDeltaInStateZeroReportsNothing) {
  store(0, {numbered(0)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(DeltaControllers, AChangeOfStateIsLoggedWithBothTimesAndEachReportedRecord) {
  remember({numbered(3), numbered(4)}, kNotReady);
  store(kReady, {numbered(3), numbered(4, 0x01020304), numbered(5, 0xFFFFFFFF)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(4, 0x01020304), numbered(5, 0xFFFFFFFF)}));
  EXPECT_THAT(system_log(), ElementsAre(state_changed("prevState(1), newState(2), prevModTime(" + kTime1000 +
                                                      "), curModTime(" + kTime2000 + ")"),
                                        changed_with_the_state("ctlr_index=4, modTimestamp=16909060"),
                                        changed_with_the_state("ctlr_index=5, modTimestamp=-1")));
}

TEST_F(DeltaControllers, AtTheFirstDeltaTheStateChangedFromZero) {
  store(255, {});

  delta();

  EXPECT_THAT(system_log(), ElementsAre(state_changed("prevState(0), newState(255), prevModTime(" + kTime0 +
                                                      "), curModTime(" + kTime1000 + ")")));
}

TEST_F(DeltaControllers, AChangeFromReadyToAnotherStateComparesRecordsToo) {
  remember({numbered(0), numbered(1)});
  store(kNotReady, {numbered(0), numbered(1, 2)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kNotReady, {numbered(1, 2)}));
}

TEST_F(DeltaControllers, AChangeBetweenOtherStatesComparesRecordsToo) {
  remember({numbered(0)}, 3);
  store(kNotReady, {numbered(0, 2)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kNotReady, {numbered(0, 2)}));
}

TEST_F(DeltaControllers, AChangeOfStateIsLoggedOnce) {
  remember({numbered(0)}, kNotReady);
  store(kReady, {numbered(0, 2)}, 2000);
  delta();
  system_log();
  store(kReady, {numbered(0, 3)}, 3000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0, 3)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(DeltaControllers, AChangeOfStateIsLoggedBeforeTheRecordsAreRead) {
  store(kReady, {numbered(0)});
  fail("fread", 2, EIO);

  delta();

  const auto lines = system_log();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_THAT(lines[0], HasSubstr(":893:"));
  EXPECT_EQ(lines[1], read_error("Input/output error"));
}

TEST_F(DeltaControllers, TimesOfMoreThan32BitsAreLoggedInFull) {
  files.write(kControllerStore, controller_file(kNotReady, {}), -1);
  full();
  files.write(kControllerStore, controller_file(kReady, {}), 1000 + (int64_t{1} << 32));

  delta();

  EXPECT_THAT(system_log(),
              ElementsAre(state_changed("prevState(1), newState(2), prevModTime(-1, Wed Dec 31 23:59:59 1969\n), "
                                        "curModTime(4294968296, Sun Feb  7 06:44:56 2106\n)")));
}

TEST_F(DeltaControllers, TimesWithoutATextAreLoggedWithEmptyOnes) {
  store(kReady, {});
  fail("ctime", 1, EOVERFLOW);
  fail("ctime", 2, EOVERFLOW);

  delta();

  EXPECT_THAT(system_log(),
              ElementsAre(state_changed("prevState(0), newState(2), prevModTime(0, ), curModTime(1000, )")));
}

// --------------------------------------------------------------------------------------- what a call leaves behind

TEST_F(DeltaControllers, AFullCallIsTheNewBaseline) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kReady, {numbered(0, 2), numbered(2)}, 2000);
  full();

  EXPECT_EQ(delta().length, 0u);

  store(kReady, {numbered(0, 2), numbered(2)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(DeltaControllers, AMissingFileLeavesTheBaseline) {
  remember({numbered(0)});
  files.remove(kControllerStore);
  EXPECT_EQ(delta().status, -37);

  store(kReady, {numbered(0)}, 1000);
  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DeltaControllers, AFailedLockLeavesTheBaseline) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  fail("flock", 1, EINTR);
  EXPECT_EQ(delta().status, -35);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(DeltaControllers, AFailedFullCallLeavesTheBaselineToo) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  fail("fopen", 1, EACCES);
  EXPECT_EQ(full().status, -35);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(DeltaControllers, ARefusedGrowthMovesTheTimeAndNothingElse) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  EXPECT_EQ(delta({.size = 8, .growth = {Growth::kRefuse}}).status, -13);

  EXPECT_EQ(delta().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());

  store(kReady, {numbered(0, 2), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_THAT(system_log(), Contains(state_changed("prevState(1), newState(2), prevModTime(" + kTime2000 +
                                                   "), curModTime(" + kTime3000 + ")")));
}

TEST_F(DeltaControllers, ARefusedGrowthOfAFullCallMovesTheTimeToo) {
  store(kReady, {numbered(0)});
  EXPECT_EQ(full({.size = 8, .growth = {Growth::kRefuse}}).status, -13);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(DeltaControllers, AnUnreadableStateMovesTheTimeAndNothingElse) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  fail("fread", 1, EIO);
  const Reply failed = delta();
  EXPECT_EQ(failed.status, -37);
  EXPECT_EQ(failed.length, 0u);

  EXPECT_EQ(delta().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());

  store(kReady, {numbered(0, 2), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_THAT(system_log(), Contains(state_changed("prevState(1), newState(2), prevModTime(" + kTime2000 +
                                                   "), curModTime(" + kTime3000 + ")")));
}

TEST_F(DeltaControllers, AnUnchangedStateMovesTheTimeAndLeavesTheList) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kNotReady, {numbered(0, 2), numbered(1)}, 2000);
  EXPECT_EQ(delta().length, 0u);

  store(kReady, {numbered(0, 2), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_THAT(system_log(), Contains(state_changed("prevState(1), newState(2), prevModTime(" + kTime2000 +
                                                   "), curModTime(" + kTime3000 + ")")));
}

TEST_F(DeltaControllers, WhatAReadErrorHidIsGoneAndThenNew) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0), numbered(1)}, 2000);
  fail("fread", 3, EIO);
  const Reply cut_short = delta();
  EXPECT_EQ(cut_short.bytes(), controller_header(kReady, 1) + gone(numbered(1), numbered(0).stored()));
  EXPECT_THAT(system_log(), ElementsAre(read_error("Input/output error")));

  store(kReady, {numbered(0), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1)}));
}

// ------------------------------------------------------------------------------------------- new_ctlr_or_modified

StorCtlrInfo record(const Controller &controller) {
  StorCtlrInfo record;
  memcpy(&record, controller.stored().data(), sizeof record);
  return record;
}

CtlrSummary cached_entry(const Controller &controller) {
  CtlrSummary summary = {};
  summary.index = controller.index;
  strncpy(summary.serial_number, controller.serial.c_str(), sizeof summary.serial_number);
  summary.mod_timestamp = static_cast<int32_t>(controller.stamp);
  return summary;
}

class NewOrModified : public PluginTest {
 protected:
  int32_t answer(const Controller &controller, const std::vector<CtlrSummary> &cached) {
    const StorCtlrInfo asked = record(controller);
    return ask(&asked, cached.data(), static_cast<uint16_t>(cached.size()));
  }
  int32_t ask(const StorCtlrInfo *asked, const CtlrSummary *cached, uint16_t count) {
    return PLUGIN(new_ctlr_or_modified)(asked, cached, count);
  }
};

TEST_F(NewOrModified, IsZeroForTheSameStamp) {
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(0, 7)), cached_entry(numbered(1, 7))}), 0);
}

TEST_F(NewOrModified, IsOneForAnotherStamp) { EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 8))}), 1); }

TEST_F(NewOrModified, IsOneForAnotherIndex) {
  Controller moved = numbered(1);
  moved.index = 2;

  EXPECT_EQ(answer(moved, {cached_entry(numbered(1))}), 1);
}

TEST_F(NewOrModified, IsOneForAnotherSerialNumber) {
  Controller replaced = numbered(1);
  replaced.serial = "SERIAL-10";

  EXPECT_EQ(answer(replaced, {cached_entry(numbered(1))}), 1);
  EXPECT_EQ(answer(numbered(1), {cached_entry(replaced)}), 1);
}

TEST_F(NewOrModified, LooksNoFurtherThanTheCount) {
  const StorCtlrInfo asked = record(numbered(0));
  const CtlrSummary cached = cached_entry(numbered(0));

  EXPECT_EQ(ask(&asked, &cached, 0), 1);
  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

TEST_F(NewOrModified, TheFirstOfTwoLikeEntriesDecides) {
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 7)), cached_entry(numbered(1, 8))}), 0);
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 8)), cached_entry(numbered(1, 7))}), 1);
}

TEST_F(NewOrModified, IsZeroWithoutARecordOrAList) {
  const StorCtlrInfo asked = record(numbered(0));
  const CtlrSummary cached = cached_entry(numbered(1));

  EXPECT_EQ(ask(nullptr, &cached, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 0), 0);
}

// What follows the serial numbers is not part of them: here, the firmware package and the vendor's number.
TEST_F(NewOrModified, ASerialNumberThatFillsItsFieldIsComparedWithinIt) {
  Controller filled = numbered(1);
  filled.serial = filling(31, 'S');
  StorCtlrInfo asked = record(filled);
  asked.firmware_package_build[0] = 'X';
  CtlrSummary cached = cached_entry(filled);
  cached.vendor_id = 0x5959;

  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

TEST_F(NewOrModified, WhatFollowsTheEndOfASerialNumberIsNotCompared) {
  StorCtlrInfo asked = record(numbered(1));
  asked.serial_number[30] = 'X';
  const CtlrSummary cached = cached_entry(numbered(1));

  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

}  // namespace
}  // namespace tests
