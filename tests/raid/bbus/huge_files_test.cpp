#include <gmock/gmock.h>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

// A file whose size does not fit the 32 bits of a reply's length.
class BbuFileBeyondAnyReply : public BbuTest, public testing::WithParamInterface<uint64_t> {};

TEST_P(BbuFileBeyondAnyReply, IsRefusedAtOnceAndTheHostIsNotAsked) {
  store_sparse(GetParam());
  trace_at(9);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_THAT(calls(), Not(Contains("realloc")));
  EXPECT_EQ(trace(), "");
}

TEST_P(BbuFileBeyondAnyReply, MovesTheTimeAsAnyRefusalDoes) {
  store_sparse(GetParam());
  full({.growth = {Growth::kRefuse}});
  store({bbu_of(0)}, 1000);

  EXPECT_EQ(delta().length, 0u);
}

// The low halves of most of these sizes would fit, with and without the header.
INSTANTIATE_TEST_SUITE_P(, BbuFileBeyondAnyReply,
                         Values(0xFFFFFFEFu, 0xFFFFFFFFu, 0x100000000u, 0x100000000u + kBbuSize, 0x180000000u,
                                0x1FFFFFFEFu, 0x20000FFEFu));

class HugeBbuFiles : public BbuTest {};

TEST_F(HugeBbuFiles, TheLargestThatFitsIsAskedFor) {
  store_sparse(0xFFFFFFEE);

  const Reply reply = full({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(0xFFFFFFFF));
}

// With the remembered one, what is wished for is a byte less than a record modulo 2 to the 32nd: the buffer seems to
// hold that.
TEST_F(HugeBbuFiles, OneTheBufferDoesNotHoldIsRefusedThoughTheWishWrapped) {
  remember({bbu_of(0)});
  store_sparse(0xFFFFFFEE, 2000);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
}

}  // namespace
}  // namespace tests
