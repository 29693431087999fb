#include <gmock/gmock.h>

#include "host/refusal.h"
#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kRoomForOne = controller_room(1);

class ReplyBufferGrowth : public ControllerTest {
 protected:
  // What a full call leaves: one controller, state 2, at 1000 seconds.
  void remember_one() {
    store(kReady, {numbered(0)});
    ASSERT_EQ(full().status, 0);
  }

  // A file of that size whose bytes are all zero, but for the state.
  void store_sparse(uint64_t size, int64_t modified = 1000) {
    files.write(kControllerStore, Bytes().u8(kReady));
    files.resize(kControllerStore, size, modified);
  }

  Reply retrieve_without_buffer(uint32_t size, Growth growth) {
    HostReplyBuffer buffer(0, {growth});
    Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
    reply.status = PLUGIN(get_store_ctrls)(static_cast<host::ReplyOwner *>(&buffer), nullptr, size, &reply.length, 0);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    reply.requests = buffer.requests();
    return reply;
  }
};

// ------------------------------------------------------------------------------------------------------ when to ask

TEST_F(ReplyBufferGrowth, ABufferOfExactlyTheSizeIsUsedAsItIs) {
  store(kReady, {numbered(0)});

  const Reply reply = full({.size = kRoomForOne, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(ReplyBufferGrowth, ABufferOneByteShortIsNot) {
  store(kReady, {numbered(0)});

  const Reply reply = full({.size = kRoomForOne - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(ReplyBufferGrowth, AFileWithoutRecordsNeedsItsStateAndTheHeader) {
  store(kReady, {});

  EXPECT_THAT(full({.size = 19}).requests, IsEmpty());
  EXPECT_THAT(full({.size = 18}).requests, ElementsAre(19));
}

TEST_F(ReplyBufferGrowth, RememberedControllersCountInFullCalls) {
  remember_one();

  EXPECT_THAT(full({.size = kRoomForOne + kControllerSize}).requests, IsEmpty());
  EXPECT_THAT(full({.size = kRoomForOne + kControllerSize - 1, .growth = {Growth::kMove}}).requests,
              ElementsAre(kRoomForOne));
}

TEST_F(ReplyBufferGrowth, RememberedControllersCountInDeltaCalls) {
  remember_one();

  store(kReady, {numbered(0)}, 2000);
  EXPECT_THAT(delta({.size = kRoomForOne + kControllerSize}).requests, IsEmpty());
  store(kReady, {numbered(0)}, 3000);
  EXPECT_THAT(delta({.size = kRoomForOne + kControllerSize - 1, .growth = {Growth::kMove}}).requests,
              ElementsAre(kRoomForOne));
}

TEST_F(ReplyBufferGrowth, AnUnchangedTimeAsksForNothing) {
  remember_one();

  EXPECT_THAT(delta({.size = 1}).requests, IsEmpty());
}

TEST_F(ReplyBufferGrowth, IsAskedForBeforeTheStateIsRead) {
  files.write(kControllerStore, Bytes());
  trace_at(3);

  const Reply unreadable = full({.size = 8});
  const Reply refused = full({.size = 8, .growth = {Growth::kRefuse}});

  EXPECT_EQ(unreadable.status, -37);
  EXPECT_THAT(unreadable.requests, ElementsAre(18));
  EXPECT_EQ(refused.status, -13);
  EXPECT_EQ(trace(), too_large(18));
}

TEST_F(ReplyBufferGrowth, IsAskedForBeforeAnUnchangedStateEndsADelta) {
  store(kNotReady, {numbered(0)});
  full();

  store(kNotReady, {numbered(0)}, 2000);
  const Reply nothing = delta({.size = 8});
  store(kNotReady, {numbered(0)}, 3000);
  const Reply refused = delta({.size = 8, .growth = {Growth::kRefuse}});

  EXPECT_EQ(nothing.status, 0);
  EXPECT_EQ(nothing.length, 0u);
  EXPECT_THAT(nothing.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(refused.status, -13);
}

// ------------------------------------------------------------------------------------------- what the host answers

class Granted : public ReplyBufferGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(Granted, TheReplyLiesInWhatTheHostReturned) {
  store(kReady, {numbered(0), numbered(1)});

  const Reply reply = full({.size = 1, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2)));
  EXPECT_EQ(reply.length, controller_reply_size(2));
  EXPECT_EQ(reply.buffer, controller_header(kReady, 2, kUntouchedAfterGrowth) + numbered(0).reported() +
                              numbered(1).reported() + Bytes().u8(kUntouchedAfterGrowth));
}

INSTANTIATE_TEST_SUITE_P(, Granted, Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

class Refused : public ReplyBufferGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(Refused, IsReplyTooLarge) {
  store(kReady, {numbered(0), numbered(1)});
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, ElementsAre(controller_room(2)));
  EXPECT_EQ(trace(), too_large(controller_room(2)));
}

TEST_P(Refused, IsReplyTooLargeInADeltaToo) {
  store(kReady, {numbered(0), numbered(1)});
  trace_at(3);

  const Reply reply = delta({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), too_large(controller_room(2)));
}

TEST_P(Refused, CountsWithoutTheRememberedControllers) {
  remember_one();
  trace_at(3);

  const Reply reply = full({.size = 100, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(trace(), too_large(kRoomForOne));
}

INSTANTIATE_TEST_SUITE_P(, Refused, every_refusal());

// The room for the gone ones was wished for, not asked for.
TEST_F(ReplyBufferGrowth, ARefusalThatLeavesRoomForTheFileIsNone) {
  remember_one();

  const Reply reply = full({.size = kRoomForOne, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(ReplyBufferGrowth, ARefusalThatLeavesOneByteTooFewIsOne) {
  remember_one();

  EXPECT_EQ(full({.size = kRoomForOne - 1, .growth = {Growth::kRefuse}}).status, -13);
}

TEST_F(ReplyBufferGrowth, ANullBufferForWhichTheHostHasNoOtherIsRefused) {
  store(kReady, {numbered(0)});

  const Reply reply = retrieve_without_buffer(65536, Growth::kRefuse);

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_TRUE(files.is_unlocked(kControllerStore));
}

TEST_F(ReplyBufferGrowth, ANullBufferThatTheHostReplacesWillDo) {
  store(kReady, {numbered(0)});

  const Reply reply = retrieve_without_buffer(0, Growth::kMove);

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_header(kReady, 1, kUntouchedAfterGrowth) + numbered(0).reported());
}

// --------------------------------------------------------------------------------------------- sizes of over 4 GiB

struct HugeFile {
  uint64_t size;
  uint32_t traced;
};
void PrintTo(const HugeFile &file, std::ostream *out) { *out << file.size; }

class BeyondAnyReply : public ReplyBufferGrowth, public testing::WithParamInterface<HugeFile> {};

TEST_P(BeyondAnyReply, IsRefusedAtOnceAndTheHostIsNotAsked) {
  store_sparse(GetParam().size);
  trace_at(3);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), too_large(GetParam().traced));
}

TEST_P(BeyondAnyReply, MovesTheTimeAsAnyRefusalDoes) {
  store_sparse(GetParam().size);
  full();
  store(kReady, {numbered(0)}, 1000);

  EXPECT_EQ(delta().length, 0u);
}

INSTANTIATE_TEST_SUITE_P(, BeyondAnyReply,
                         Values(HugeFile{0xFFFFFFEEu, 0}, HugeFile{0x100000000u, 18}, HugeFile{0x100000005u, 23},
                                HugeFile{0x1FFFFFFEDu, 0xFFFFFFFF}, HugeFile{0x1FFFFFFEEu, 0},
                                HugeFile{0x20000FFEEu, 65536}));

TEST_F(ReplyBufferGrowth, TheLargestFileThatFitsIsAskedFor) {
  store_sparse(0xFFFFFFED);
  trace_at(3);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFFFF));
  EXPECT_EQ(trace(), too_large(0xFFFFFFFF));
}

TEST_F(ReplyBufferGrowth, AFileThatFitsIsAskedForThoughTheRememberedControllersDoNot) {
  remember_one();
  store_sparse(0xFFFFFF00, 2000);
  trace_at(3);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFF12));
  EXPECT_EQ(trace(), too_large(0xFFFFFF12));
}

}  // namespace
}  // namespace tests
