// A reply counts its records in eight bits, and the lists count theirs in sixteen.

#include <gmock/gmock.h>

#include <fstream>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::Values;

constexpr uint32_t kRoomForAll = 1u << 20;

class SoManyControllers : public ControllerTest, public testing::WithParamInterface<size_t> {};

// The 257th lies in the first slot again: the slot follows the count, and the count has eight bits.
TEST_P(SoManyControllers, FillTheSlotsAndWrapTheCount) {
  const std::vector<Controller> controllers = numbered_below(GetParam());
  store(kNotReady, controllers);
  const auto count = static_cast<uint8_t>(GetParam());
  Bytes expected = controller_header(kNotReady, count).fill(kRoomForAll - kControllerHeaderSize, 0xA5);
  for (size_t number = 0; number < controllers.size(); ++number)
    expected.put(kControllerHeaderSize + kControllerSize * (number % 256), controllers[number].reported());

  const Reply reply = full({.size = kRoomForAll});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, controller_reply_size(count));
  EXPECT_TRUE(reply.buffer == expected);
}

INSTANTIATE_TEST_SUITE_P(, SoManyControllers, Values(0, 1, 2, 255, 256, 257, 300));

class VeryManyControllers : public ControllerTest, public testing::WithParamInterface<size_t> {
 protected:
  static constexpr size_t kLast = 9;

  // All zero, but for the last one.
  void store_very_many(size_t count) {
    files.write(kControllerStore, Bytes().u8(kNotReady));
    files.resize(kControllerStore, controller_file_size(count - 1), 1000);
    const Bytes last = numbered(kLast).stored();
    std::ofstream file(files.real(kControllerStore), std::ios::binary | std::ios::app);
    file.write(reinterpret_cast<const char *>(last.data()), kControllerSize);
  }
};

TEST_P(VeryManyControllers, WrapTheCountAndTheSlots) {
  const size_t count = GetParam();
  store_very_many(count);
  const uint32_t size = controller_room(count);

  const Reply reply = full({.size = size, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, controller_reply_size(count % 256));
  EXPECT_EQ(reply.buffer.slice(0, 18), controller_header(kNotReady, static_cast<uint8_t>(count)));
  EXPECT_EQ(slot(reply, (count - 1) % 256), numbered(kLast).reported());
  EXPECT_EQ(slot(reply, count % 256), Bytes::repeated(kControllerSize, 0));
  EXPECT_EQ(slot(reply, 256), untouched_slot());
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_P(VeryManyControllers, AreRememberedInACountOf16Bits) {
  const size_t count = GetParam();
  store_very_many(count);
  full({.size = controller_room(count)});
  store(kNotReady, {}, 2000);

  const uint32_t enough = controller_room(count % 65536);
  const Reply asking = full({.size = enough - 1, .growth = {Growth::kMove}});

  EXPECT_THAT(asking.requests, testing::ElementsAre(19));
}

TEST_P(VeryManyControllers, AreRememberedInNoMoreThanACountOf16Bits) {
  const size_t count = GetParam();
  store_very_many(count);
  full({.size = controller_room(count)});
  store(kNotReady, {}, 2000);

  const uint32_t enough = controller_room(count % 65536);
  const Reply content = full({.size = enough});

  EXPECT_THAT(content.requests, IsEmpty());
  EXPECT_EQ(content.bytes(), controller_header(kNotReady, 0));
}

INSTANTIATE_TEST_SUITE_P(, VeryManyControllers, Values(65536, 70000));

}  // namespace
}  // namespace tests
