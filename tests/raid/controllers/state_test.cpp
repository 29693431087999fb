#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Values;

class ControllerState : public ControllerTest {};

class UnchangedState : public ControllerState, public testing::WithParamInterface<uint8_t> {};

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

TEST_F(ControllerState, AFirstDeltaInStateZeroReportsNothing) {
  store(0, {numbered(0)});

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(ControllerState, AChangeOfStateIsLoggedWithBothTimesAndEachReportedRecord) {
  remember({numbered(3), numbered(4)}, kNotReady);
  store(kReady, {numbered(3), numbered(4, 0x01020304), numbered(5, 0xFFFFFFFF)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(4, 0x01020304), numbered(5, 0xFFFFFFFF)}));
  EXPECT_THAT(system_log(), ElementsAre(state_changed("prevState(1), newState(2), prevModTime(" + kTime1000 +
                                                      "), curModTime(" + kTime2000 + ")"),
                                        changed_with_the_state("ctlr_index=4, modTimestamp=16909060"),
                                        changed_with_the_state("ctlr_index=5, modTimestamp=-1")));
}

TEST_F(ControllerState, AtTheFirstDeltaTheStateChangedFromZero) {
  store(255, {});

  delta();

  EXPECT_THAT(system_log(), ElementsAre(state_changed("prevState(0), newState(255), prevModTime(" + kTime0 +
                                                      "), curModTime(" + kTime1000 + ")")));
}

TEST_F(ControllerState, AChangeFromReadyToAnotherStateComparesRecordsToo) {
  remember({numbered(0), numbered(1)});
  store(kNotReady, {numbered(0), numbered(1, 2)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kNotReady, {numbered(1, 2)}));
}

TEST_F(ControllerState, AChangeBetweenOtherStatesComparesRecordsToo) {
  remember({numbered(0)}, 3);
  store(kNotReady, {numbered(0, 2)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kNotReady, {numbered(0, 2)}));
}

TEST_F(ControllerState, AChangeOfStateIsLoggedOnce) {
  remember({numbered(0)}, kNotReady);
  store(kReady, {numbered(0, 2)}, 2000);
  delta();
  system_log();
  store(kReady, {numbered(0, 3)}, 3000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0, 3)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(ControllerState, AChangeOfStateIsLoggedBeforeTheRecordsAreRead) {
  store(kReady, {numbered(0)});
  fail("fread", 2, EIO);

  delta();

  const auto lines = system_log();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_THAT(lines[0], HasSubstr(":893:"));
  EXPECT_EQ(lines[1], read_error("Input/output error"));
}

TEST_F(ControllerState, TimesOfMoreThan32BitsAreLoggedInFull) {
  files.write(kControllerStore, controller_file(kNotReady, {}), -1);
  full();
  files.write(kControllerStore, controller_file(kReady, {}), 1000 + (int64_t{1} << 32));

  delta();

  EXPECT_THAT(system_log(),
              ElementsAre(state_changed("prevState(1), newState(2), prevModTime(-1, Wed Dec 31 23:59:59 1969\n), "
                                        "curModTime(4294968296, Sun Feb  7 06:44:56 2106\n)")));
}

class ControllerStateIn1970 : public ControllerState,
                              public testing::WithParamInterface<std::pair<int64_t, const char *>> {};

TEST_P(ControllerStateIn1970, HasTheNamesOfDayAndMonth) {
  const auto &[day, text] = GetParam();
  remember({}, kNotReady);
  store(kReady, {}, (day * 24 + 12) * 3600);

  delta();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr(std::string(", ") + text + " 12:00:00 1970\n)")));
}

INSTANTIATE_TEST_SUITE_P(, ControllerStateIn1970,
                         Values(std::pair(0, "Thu Jan  1"), std::pair(31, "Sun Feb  1"), std::pair(59, "Sun Mar  1"),
                                std::pair(90, "Wed Apr  1"), std::pair(120, "Fri May  1"), std::pair(151, "Mon Jun  1"),
                                std::pair(181, "Wed Jul  1"), std::pair(212, "Sat Aug  1"),
                                std::pair(243, "Tue Sep  1"), std::pair(273, "Thu Oct  1"),
                                std::pair(304, "Sun Nov  1"), std::pair(334, "Tue Dec  1")));

// As ctime has it, though the plug-in must not call that: its text belongs to the whole process, and another kind's
// call may be under way.
TEST_F(ControllerState, TheHostsOwnCtimeTextIsLeftAlone) {
  const time_t own_time = 86400;
  const char *const own_text = ctime(&own_time);
  remember({}, kNotReady);
  store(kReady, {}, 2000);

  delta();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr(kTime2000)));
  EXPECT_STREQ(own_text, "Fri Jan  2 00:00:00 1970\n");
}

TEST_F(ControllerState, TimesAreThoseOfTheZoneThatHoldsWhenTheyAreLogged) {
  remember({}, kNotReady);
  store(kReady, {}, 2000);

  setenv("TZ", "EAST-2:30", 1);
  delta();
  setenv("TZ", "UTC0", 1);
  tzset();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr("curModTime(2000, Thu Jan  1 03:03:20 1970\n)")));
}

TEST_F(ControllerState, YearsOfFiveDigitsHaveATextToo) {
  constexpr int64_t kYear10000 = 253402300800;
  files.write(kControllerStore, controller_file(kReady, {}), kYear10000);
  if (files.modified(kControllerStore) != kYear10000) GTEST_SKIP() << "no file here can be so new";

  delta();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr("curModTime(253402300800, Sat Jan  1 00:00:00 10000\n)")));
}

// The seconds have the year in which ctime gives up before localtime_r does: an int cannot count it.
TEST_F(ControllerState, AYearThatIsTooLargeForATextIsLoggedWithAnEmptyOne) {
  constexpr int64_t kLastOfAll = 67768036191676799;
  files.write(kControllerStore, controller_file(kReady, {}), kLastOfAll);
  if (files.modified(kControllerStore) != kLastOfAll) GTEST_SKIP() << "no file here can be so new";

  delta();

  EXPECT_THAT(system_log(), ElementsAre(HasSubstr("curModTime(67768036191676799, )")));
}

TEST_F(ControllerState, TimesWithoutATextAreLoggedWithEmptyOnes) {
  store(kReady, {});
  fail("localtime_r", 1, EOVERFLOW);
  fail("localtime_r", 2, EOVERFLOW);

  delta();

  EXPECT_THAT(system_log(),
              ElementsAre(state_changed("prevState(0), newState(2), prevModTime(0, ), curModTime(1000, )")));
}

}  // namespace
}  // namespace tests
