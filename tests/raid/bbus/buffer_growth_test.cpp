#include <gmock/gmock.h>

#include "host/refusal.h"
#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

// What one record needs, and the room that is wished for when one is remembered.
constexpr uint32_t kRoomForOne = bbu_reply_size(1);
constexpr uint32_t kWishedForOne = bbu_reply_size(1 + 1);

// What two need.
constexpr uint32_t kRoomForTwo = bbu_reply_size(2);

class BbuReplyGrowth : public BbuTest {
 protected:
  Reply retrieve_without_buffer(uint32_t size, Growth growth) {
    HostReplyBuffer buffer(0, {growth});
    Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
    reply.status = PLUGIN(get_store_bbu)(static_cast<host::ReplyOwner *>(&buffer), nullptr, size, &reply.length, 0);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    reply.requests = buffer.requests();
    return reply;
  }
};

// ------------------------------------------------------------------------------------------------------ when to ask

TEST_F(BbuReplyGrowth, ABufferOfExactlyTheSizeIsUsedAsItIs) {
  store({bbu_of(0)});

  const Reply reply = full({.size = kRoomForOne, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(BbuReplyGrowth, ABufferOneByteShortIsNot) {
  store({bbu_of(0)});

  const Reply reply = full({.size = kRoomForOne - 1});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForOne));
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(BbuReplyGrowth, AnEmptyFileNeedsTheHeader) {
  store({});

  EXPECT_THAT(full({.size = 17}).requests, IsEmpty());
  EXPECT_THAT(full({.size = 16}).requests, ElementsAre(17));
}

TEST_F(BbuReplyGrowth, CountsEveryByteOfTheFile) {
  constexpr uint32_t kFileSize = 400;
  constexpr uint32_t kNeeded = kFileSize + kBbuHeaderSize;

  files.write(kBbuStore, Bytes::repeated(kFileSize, 0));
  EXPECT_THAT(full({.size = kNeeded}).requests, IsEmpty());
  files.write(kBbuStore, Bytes::repeated(kFileSize + 1, 0));
  unload();
  load();
  EXPECT_THAT(full({.size = kNeeded}).requests, ElementsAre(kNeeded + 1));
}

TEST_F(BbuReplyGrowth, RememberedBbusCountAndAreAskedForInFullCalls) {
  remember({bbu_of(0)});

  EXPECT_THAT(full({.size = kWishedForOne}).requests, IsEmpty());
  EXPECT_THAT(full({.size = kWishedForOne - 1}).requests, ElementsAre(kWishedForOne));
}

TEST_F(BbuReplyGrowth, RememberedBbusCountAndAreAskedForInDeltaCalls) {
  remember({bbu_of(0)});

  store({bbu_of(0)}, 2000);
  EXPECT_THAT(delta({.size = kWishedForOne}).requests, IsEmpty());
  store({bbu_of(0)}, 3000);
  EXPECT_THAT(delta({.size = kWishedForOne - 1}).requests, ElementsAre(kWishedForOne));
}

TEST_F(BbuReplyGrowth, CountsWhatThePreviousCallReadNotWhatItReported) {
  remember(bbus_below(3));
  store(bbus_below(2), 2000);
  delta();

  store({bbu_of(0)}, 3000);
  EXPECT_THAT(delta({.size = 1}).requests, ElementsAre(bbu_reply_size(1 + 2)));
}

TEST_F(BbuReplyGrowth, AnUnchangedTimeAsksForNothing) {
  remember({bbu_of(0)});

  EXPECT_THAT(delta({.size = 1}).requests, IsEmpty());
}

// ------------------------------------------------------------------------------------------- what the host answers

class GrantedToBbus : public BbuReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(GrantedToBbus, TheReplyLiesInWhatTheHostReturned) {
  store(bbus_below(2));

  const Reply reply = full({.size = 1, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForTwo));
  EXPECT_EQ(reply.buffer, bbu_reply(bbus_below(2), kUntouchedAfterGrowth));
}

TEST_P(GrantedToBbus, TheReplyLiesThereEvenIfTheOldBufferWouldHaveDone) {
  remember({bbu_of(0)});

  const Reply reply = full({.size = kWishedForOne - 39, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kWishedForOne));
  const uint8_t untouched = GetParam() == Growth::kInPlace ? kUntouched : kUntouchedAfterGrowth;
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}, untouched));
  EXPECT_EQ(reply.buffer.size(), kWishedForOne);
}

INSTANTIATE_TEST_SUITE_P(, GrantedToBbus, Values(Growth::kInPlace, Growth::kMove, Growth::kSayNothing));

class RefusedToBbus : public BbuReplyGrowth, public testing::WithParamInterface<Growth> {};

TEST_P(RefusedToBbus, IsReplyTooLargeWithoutATrace) {
  store(bbus_below(2));
  trace_at(9);

  const Reply reply = full({.size = kRoomForTwo - 1, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, ElementsAre(kRoomForTwo));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(RefusedToBbus, IsReplyTooLargeInADeltaToo) {
  store(bbus_below(2));

  const Reply reply = delta({.size = kRoomForTwo - 1, .growth = {GetParam()}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
}

TEST_P(RefusedToBbus, ComesBeforeTheListsAreMade) {
  store(bbus_below(2));

  full({.size = kRoomForTwo - 1, .growth = {GetParam()}});

  EXPECT_THAT(calls(), Contains("flock 8"));
  EXPECT_THAT(calls(), Not(Contains("realloc")));
  EXPECT_THAT(calls(), Not(Contains("fread")));
}

TEST_P(RefusedToBbus, MovesTheTime) {
  store(bbus_below(2));
  full({.size = kRoomForTwo - 1, .growth = {GetParam()}});

  EXPECT_EQ(delta().length, 0u);
}

INSTANTIATE_TEST_SUITE_P(, RefusedToBbus, every_refusal());

// The room for what was remembered is wished for, not needed.
class RefusedWhatBbusDoNotNeed : public BbuReplyGrowth,
                                 public testing::WithParamInterface<std::tuple<Growth, uint32_t>> {};

TEST_P(RefusedWhatBbusDoNotNeed, IsNoFailureWhereTheOldBufferHoldsTheFile) {
  const auto &[growth, size] = GetParam();
  remember({bbu_of(0)});
  trace_at(9);

  const Reply reply = full({.size = size, .growth = {growth}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_THAT(reply.requests, ElementsAre(kWishedForOne));
  EXPECT_EQ(reply.buffer, bbu_reply({bbu_of(0)}).fill(size - kRoomForOne, kUntouched));
  EXPECT_EQ(reply.length, kRoomForOne);
  EXPECT_EQ(trace(), "");
}

TEST_P(RefusedWhatBbusDoNotNeed, IsNoFailureOfADeltaEither) {
  const auto &[growth, size] = GetParam();
  remember({bbu_of(0)});
  store({bbu_of(0, 2)}, 2000);

  EXPECT_EQ(delta({.size = size, .growth = {growth}}).bytes(), bbu_reply({bbu_of(0, 2)}));
}

INSTANTIATE_TEST_SUITE_P(, RefusedWhatBbusDoNotNeed,
                         testing::Combine(Values(Growth::kRefuse, Growth::kNull),
                                          Values(kRoomForOne, kRoomForOne + 1, kWishedForOne - 1)));

TEST_F(BbuReplyGrowth, ARefusalThatLeavesOneByteTooFewIsOne) {
  for (const Growth growth : {Growth::kRefuse, Growth::kNull}) {
    remember({bbu_of(0)});

    const Reply reply = full({.size = kRoomForOne - 1, .growth = {growth}});

    EXPECT_EQ(reply.status, -13);
    EXPECT_EQ(reply.length, 0u);
  }
}

// What the host returned is the buffer from then on, however large it is.
TEST_F(BbuReplyGrowth, LessThanWasWishedForIsEnoughForTheFile) {
  remember({bbu_of(0)});

  const Reply reply = full({.size = kRoomForOne - 1, .growth = {Growth::kGrantLess}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.buffer, bbu_reply({bbu_of(0)}, kUntouchedAfterGrowth).fill(kBbuSize - 1, kUntouchedAfterGrowth));
}

TEST_F(BbuReplyGrowth, LessThanWasWishedForIsTakenThoughTheOldBufferWouldHaveDone) {
  remember({bbu_of(0)});

  const Reply reply = full({.size = kRoomForOne, .growth = {Growth::kGrantLess}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.buffer, bbu_reply({bbu_of(0)}, kUntouchedAfterGrowth).fill(kBbuSize - 1, kUntouchedAfterGrowth));
}

// A host that gives another buffer, whatever its size, may have taken the old one back.
class ShrinkingHost : public host::ReplyOwner {
 public:
  uint8_t *grow(uint32_t, uint32_t *available) override {
    *available = static_cast<uint32_t>(other.size());
    return other.data();
  }

  std::vector<uint8_t> passed_in = std::vector<uint8_t>(kRoomForOne, kUntouched);
  std::vector<uint8_t> other = std::vector<uint8_t>(kRoomForOne - 1, kUntouchedAfterGrowth);
};

TEST_F(BbuReplyGrowth, AnotherBufferThatIsTooSmallIsARefusalThoughTheOldOneWouldHaveDone) {
  remember({bbu_of(0)});
  ShrinkingHost host;
  uint32_t length = kUnwrittenLength;

  const int32_t status =
      PLUGIN(get_store_bbu)(static_cast<host::ReplyOwner *>(&host), host.passed_in.data(), kRoomForOne, &length, 0);

  EXPECT_EQ(status, -13);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(Bytes(host.passed_in), Bytes::repeated(kRoomForOne, kUntouched));
  EXPECT_EQ(Bytes(host.other), Bytes::repeated(kRoomForOne - 1, kUntouchedAfterGrowth));
}

TEST_F(BbuReplyGrowth, ANullBufferForWhichTheHostHasNoOtherIsRefused) {
  store({bbu_of(0)});

  const Reply reply = retrieve_without_buffer(65536, Growth::kRefuse);

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_TRUE(files.is_unlocked(kStorageLock));
}

TEST_F(BbuReplyGrowth, ANullBufferThatTheHostReplacesWillDo) {
  store({bbu_of(0)});

  const Reply reply = retrieve_without_buffer(0, Growth::kMove);

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}, kUntouchedAfterGrowth));
}

}  // namespace
}  // namespace tests
