#include <gmock/gmock.h>

#include <cerrno>

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

TEST_F(ControllerState, TimesWithoutATextAreLoggedWithEmptyOnes) {
  store(kReady, {});
  fail("ctime", 1, EOVERFLOW);
  fail("ctime", 2, EOVERFLOW);

  delta();

  EXPECT_THAT(system_log(),
              ElementsAre(state_changed("prevState(0), newState(2), prevModTime(0, ), curModTime(1000, )")));
}

}  // namespace
}  // namespace tests
