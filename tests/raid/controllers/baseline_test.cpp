// What deltas compare with, and what they do under the lock.

#include <gmock/gmock.h>

#include <cerrno>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ControllerBaseline : public ControllerTest {};

TEST_F(ControllerBaseline, TheFirstOfTwoRecordsWithOneIdentityDecides) {
  remember({numbered(0, 2), numbered(0, 1)});
  store(kReady, {numbered(0, 2)}, 2000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));

  remember({numbered(0, 2), numbered(0, 1)});
  store(kReady, {numbered(0, 1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 1)}));
}

TEST_F(ControllerBaseline, TheFirstDecidesWithoutMemoryForAnIndexToo) {
  remember({numbered(0, 2), numbered(0, 1)});
  store(kReady, {numbered(0, 1)}, 2000);
  fail("malloc", 1, ENOMEM);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 1)}));
}

TEST_F(ControllerBaseline, AFailedIndexIsNoReasonForWhatComesLater) {
  remember({numbered(0)});
  store(kReady, {numbered(0), numbered(1)}, 2000);
  inject("realloc", 1, {.fails = true, .error = 0});  // no cur list, and nothing is said of memory
  fail("malloc", 1, ENOMEM);

  delta();

  EXPECT_THAT(system_log(), Contains(read_error("Success")));
}

TEST_F(ControllerBaseline, GoneControllersAreWrittenUnderTheLock) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0)}, 2000);
  bool is_free = true;
  before_call("strncpy_s", 3, [&] { is_free = files.is_unlocked(kControllerStore); });  // after the one that is there

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 1) + gone(numbered(1), numbered(0).stored()));

  EXPECT_FALSE(is_free);
}

TEST_F(ControllerBaseline, AReadErrorIsLoggedBeforeRoomForTheGoneIsRefused) {
  remember(numbered_below(3));
  store(kReady, {numbered(0)}, 2000);
  fail("fread", 3, EIO);

  EXPECT_EQ(delta({.size = 18, .growth = {Growth::kInPlace, Growth::kRefuse}}).status, -13);

  EXPECT_THAT(system_log(), Contains(read_error("Input/output error")));
}

TEST_F(ControllerBaseline, AReadErrorIsLoggedBeforeTheListsAreDumped) {
  store(kReady, {numbered(0)});
  files.write_text("/var/mctool_ctlrdebug", "");
  fail("fread", 3, EIO);

  full();

  const auto logged = std::ranges::find(calls(), "syslog");
  ASSERT_NE(logged, calls().end());
  EXPECT_EQ(std::count(calls().begin(), logged, "fopen /var/mctool_ctlrdebug.txt"), 0);
  EXPECT_EQ(std::count(logged, calls().end(), "fopen /var/mctool_ctlrdebug.txt"), 3);
}

TEST_F(ControllerBaseline, ANullGrantIsARefusalThoughTheOldBufferWouldDo) {
  remember({numbered(0)});
  trace_at(3);

  EXPECT_EQ(full({.size = controller_room(1), .growth = {Growth::kNull}}).status, -13);

  EXPECT_EQ(trace(), too_large(controller_room(1)));
}

TEST_F(ControllerBaseline, ABufferThatMovesForTheGoneKeepsWhatARecordLeft) {
  remember(numbered_below(3));
  store(kReady, {numbered(1)}, 2000);

  const Reply reply = delta({.size = 18, .growth = {Growth::kInPlace, Growth::kMove}});

  EXPECT_EQ(reply.bytes(), controller_header(kReady, 2) + gone(numbered(0), numbered(1).stored()) +
                               gone(numbered(2), Bytes::repeated(kControllerSize, kUntouchedAfterGrowth)));
}

TEST_F(ControllerBaseline, SizesAreUnsigned) {
  store(kReady, {numbered(0)});
  for (const uint32_t size : {0x80000000u, 0xFFFFFFFFu}) {
    HostReplyBuffer buffer(65536, {Growth::kRefuse});  // as much as is written
    uint32_t length = 0;

    EXPECT_EQ(PLUGIN(mc_get_store_ctrls)(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), size, &length), 0);

    EXPECT_THAT(buffer.requests(), IsEmpty());
    EXPECT_EQ(length, controller_reply_size(1));
  }
}

TEST_F(ControllerBaseline, SimulatedSizesAreUnsigned) {
  files.write_text("/debug/mctool_storage_debug", "");
  HostReplyBuffer buffer(65536, {Growth::kRefuse});
  uint32_t length = 0;

  EXPECT_EQ(PLUGIN(mc_get_store_ctrls)(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), 0x80000000u, &length),
            0);

  EXPECT_THAT(buffer.requests(), IsEmpty());
}

// 65536 do not fit the 16 bits of the comparison, so that it finds none.
TEST_F(ControllerBaseline, OfVeryManyControllersNoneIsCompared) {
  remember({numbered(0)});
  constexpr size_t kCount = 65536;
  files.write(kControllerStore, Bytes().u8(kReady) + numbered(0).stored());
  files.resize(kControllerStore, controller_file_size(kCount), 2000);

  const Reply reply = delta({.size = controller_room(kCount + 1), .growth = {Growth::kRefuse}});

  // 65535 new ones without a name, and then the one that is still there.
  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 18u);  // the count has wrapped
  EXPECT_EQ(slot(reply, 255), gone(numbered(0), Bytes::repeated(kControllerSize, 0)));
}

TEST_F(ControllerBaseline, TheListsAreClearedByTheHost) {
  remember(numbered_below(2));
  store(kReady, numbered_below(3), 2000);
  forget_calls();

  delta();

  // The cur list when it grows, and at the end what the cached list had.
  std::vector<std::string> cleared;
  for (const std::string &call : calls())
    if (call.starts_with("memset_s")) cleared.push_back(call);
  EXPECT_THAT(cleared, ElementsAre("memset_s 192", "memset_s 128"));
}

// --------------------------------------------------------------------------------------- what a call leaves behind

TEST_F(ControllerBaseline, AFullCallIsTheNewBaseline) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kReady, {numbered(0, 2), numbered(2)}, 2000);
  full();

  EXPECT_EQ(delta().length, 0u);

  store(kReady, {numbered(0, 2), numbered(2)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(ControllerBaseline, AMissingFileLeavesTheBaseline) {
  remember({numbered(0)});
  files.remove(kControllerStore);
  EXPECT_EQ(delta().status, -37);

  store(kReady, {numbered(0)}, 1000);
  EXPECT_EQ(delta().length, 0u);
}

TEST_F(ControllerBaseline, AFailedLockLeavesTheBaseline) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  fail("flock", 1, EINTR);
  EXPECT_EQ(delta().status, -35);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(ControllerBaseline, AFailedFullCallLeavesTheBaselineToo) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0, 2), numbered(1)}, 2000);
  fail("fopen", 1, EACCES);
  EXPECT_EQ(full().status, -35);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
}

TEST_F(ControllerBaseline, ARefusedGrowthMovesTheTimeAndNothingElse) {
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

TEST_F(ControllerBaseline, ARefusedGrowthOfAFullCallMovesTheTimeToo) {
  store(kReady, {numbered(0)});
  EXPECT_EQ(full({.size = 8, .growth = {Growth::kRefuse}}).status, -13);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(ControllerBaseline, AnUnreadableStateMovesTheTimeAndNothingElse) {
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

TEST_F(ControllerBaseline, AnUnchangedStateMovesTheTimeAndLeavesTheList) {
  remember({numbered(0), numbered(1)}, kNotReady);
  store(kNotReady, {numbered(0, 2), numbered(1)}, 2000);
  EXPECT_EQ(delta().length, 0u);

  store(kReady, {numbered(0, 2), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(0, 2)}));
  EXPECT_THAT(system_log(), Contains(state_changed("prevState(1), newState(2), prevModTime(" + kTime2000 +
                                                   "), curModTime(" + kTime3000 + ")")));
}

TEST_F(ControllerBaseline, WhatAReadErrorHidIsGoneAndThenNew) {
  remember({numbered(0), numbered(1)});
  store(kReady, {numbered(0), numbered(1)}, 2000);
  fail("fread", 3, EIO);
  const Reply cut_short = delta();
  EXPECT_EQ(cut_short.bytes(), controller_header(kReady, 1) + gone(numbered(1), numbered(0).stored()));
  EXPECT_THAT(system_log(), ElementsAre(read_error("Input/output error")));

  store(kReady, {numbered(0), numbered(1)}, 3000);
  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1)}));
}

}  // namespace
}  // namespace tests
