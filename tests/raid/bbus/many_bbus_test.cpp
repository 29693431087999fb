#include <gmock/gmock.h>

#include <fstream>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::Values;

class SoManyBbus : public BbuTest, public testing::WithParamInterface<size_t> {};

// The 257th lies in the first slot again: the slot follows the count, and the count has eight bits. The length covers
// what the count says.
TEST_P(SoManyBbus, FillTheSlotsAndWrapTheCount) {
  const std::vector<Bbu> bbus = bbus_below(GetParam());
  store(bbus);
  const auto count = static_cast<uint8_t>(GetParam());
  const uint32_t room = bbu_reply_size(bbus.size());
  Bytes expected = bbu_header(count).fill(room - kBbuHeaderSize, 0xA5);
  for (size_t number = 0; number < bbus.size(); ++number)
    expected.put(kBbuHeaderSize + kBbuSize * (number % 256), bbus[number].reported());

  const Reply reply = full({.size = room, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, bbu_reply_size(count));
  EXPECT_TRUE(reply.buffer == expected);
}

TEST_P(SoManyBbus, AreAllRemembered) {
  std::vector<Bbu> bbus = bbus_below(std::min<size_t>(GetParam(), 256));
  remember(bbus_below(GetParam()));
  store(bbus, 2000);
  EXPECT_EQ(delta().bytes(), bbu_header(0));

  if (bbus.empty()) return;
  bbus.back().stamp = 2;
  store(bbus, 3000);
  EXPECT_EQ(delta().bytes(), bbu_reply({bbus.back()}));
}

INSTANTIATE_TEST_SUITE_P(, SoManyBbus, Values(0, 1, 2, 255, 256, 257, 300));

class VeryManyBbus : public BbuTest, public testing::WithParamInterface<size_t> {
 protected:
  static constexpr size_t kLast = 9;

  // All zero, but for the last one.
  void store_very_many() {
    store_sparse((GetParam() - 1) * kBbuSize);
    const Bytes last = bbu_of(kLast).stored();
    std::ofstream file(files.real(kBbuStore), std::ios::binary | std::ios::app);
    file.write(reinterpret_cast<const char *>(last.data()), kBbuSize);
  }
  uint32_t room() const { return bbu_reply_size(GetParam()); }
};

// Both counts wrap, that of the reply after 255 and that of the list after 65535. In the list, too, the later ones are
// then written over the first ones: so the last one is among the 4464 that 70000 leave.
TEST_P(VeryManyBbus, WrapTheCountTheSlotsAndTheList) {
  store_very_many();

  const Reply reply = full({.size = room(), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, bbu_reply_size(GetParam() % 256));
  EXPECT_EQ(reply.buffer.slice(0, 17), bbu_header(static_cast<uint8_t>(GetParam())));
  EXPECT_EQ(slot(reply, (GetParam() - 1) % 256), bbu_of(kLast).reported());
  EXPECT_EQ(slot(reply, GetParam() % 256), Bytes::repeated(kBbuSize, 0));
  EXPECT_EQ(slot(reply, 256), untouched_bbu_slot());

  const size_t remembered = GetParam() % 65536;
  const uint32_t wished_for = bbu_reply_size(2 + remembered);
  files.write(kBbuStore, Bytes::repeated(kBbuSize, 0) + bbu_of(kLast).stored(), 2000);
  const Reply change = delta({.size = wished_for - 1});

  EXPECT_THAT(change.requests, ElementsAre(wished_for));
  if (remembered > 0)
    EXPECT_EQ(change.bytes(), bbu_header(0));
  else
    EXPECT_EQ(change.bytes(), bbu_header(2).fill(kBbuSize, 0) + bbu_of(kLast).reported());
}

INSTANTIATE_TEST_SUITE_P(, VeryManyBbus, Values(65536, 70000));

}  // namespace
}  // namespace tests
