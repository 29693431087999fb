#include <gmock/gmock.h>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

class DeltaControllers : public ControllerTest {
 protected:
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

}  // namespace
}  // namespace tests
