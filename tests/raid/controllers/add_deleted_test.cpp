#include <gmock/gmock.h>

#include <cstring>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

CtlrSummary summary(const Controller &controller) {
  CtlrSummary summary = {};
  summary.index = controller.index;
  strncpy(summary.controller, controller.name.c_str(), sizeof summary.controller);
  strncpy(summary.serial_number, controller.serial.c_str(), sizeof summary.serial_number);
  summary.vendor_id = controller.vendor_id;
  summary.device_id = controller.device_id;
  summary.subvendor_id = controller.subvendor_id;
  summary.subdevice_id = controller.subdevice_id;
  summary.controller_type = controller.type;
  return summary;
}

class AddDeleted : public PluginTest {
 protected:
  using List = std::vector<CtlrSummary>;

  // The reply, with room for so many records, after the cached ones that are gone were appended.
  Bytes appended(uint8_t count, size_t room, const List &cur, const List &cached) {
    const Bytes before = reply_with(count, room);
    std::vector<uint8_t> reply(before.data(), before.data() + before.size());
    add(reply.data(), cur.size(), cur.data(), cached.size(), cached.data());
    return Bytes(reply);
  }
  void add(uint8_t *reply, size_t cur_count, const CtlrSummary *cur, size_t cached_count, const CtlrSummary *cached) {
    PLUGIN(add_deleted_ctlrs)
    (reply, static_cast<uint16_t>(cur_count), cur, static_cast<uint16_t>(cached_count), cached);
  }
  static Bytes reply_with(uint8_t count, size_t room) {
    return controller_header(kReady, count).fill(room * kControllerSize, 0xA5);
  }
};

TEST_F(AddDeleted, AppendsBehindTheRecordsThatAreCounted) {
  const Bytes reply = appended(2, 4, {summary(numbered(1))}, {summary(numbered(0)), summary(numbered(1))});

  EXPECT_EQ(reply, controller_header(kReady, 3) + untouched_slot() + untouched_slot() +
                       gone(numbered(0), untouched_slot()) + untouched_slot());
}

TEST_F(AddDeleted, WrapsTheCountAndTheSlot) {
  const Bytes reply = appended(255, 256, {summary(numbered(9))}, {summary(numbered(0)), summary(numbered(1))});

  EXPECT_EQ(reply[4], 1);
  EXPECT_EQ(reply.slice(controller_reply_size(255), kControllerSize), gone(numbered(0), untouched_slot()));
  EXPECT_EQ(reply.slice(kControllerHeaderSize, kControllerSize), gone(numbered(1), untouched_slot()));
}

TEST_F(AddDeleted, ReportsEveryOneOfTwoLikeEntries) {
  const Bytes reply = appended(0, 2, {summary(numbered(9))}, {summary(numbered(0)), summary(numbered(0))});

  EXPECT_EQ(reply,
            controller_header(kReady, 2) + gone(numbered(0), untouched_slot()) + gone(numbered(0), untouched_slot()));
}

TEST_F(AddDeleted, LooksNoFurtherThanTheCounts) {
  const CtlrSummary cached[] = {summary(numbered(0)), summary(numbered(1))};
  const CtlrSummary cur[] = {summary(numbered(9)), summary(numbered(0))};
  const Bytes before = reply_with(0, 2);
  std::vector<uint8_t> reply(before.data(), before.data() + before.size());

  add(reply.data(), 1, cur, 1, cached);

  EXPECT_EQ(Bytes(reply), controller_header(kReady, 1) + gone(numbered(0), untouched_slot()) + untouched_slot());
}

TEST_F(AddDeleted, IsPresentMeansTheSameIndexAndTheSameSerialNumber) {
  Controller moved = numbered(0);
  moved.index = 5;
  Controller replaced = numbered(0);
  replaced.serial = "SERIAL-01";

  const Bytes reply = appended(0, 1, {summary(moved), summary(replaced)}, {summary(numbered(0))});

  EXPECT_EQ(reply, controller_header(kReady, 1) + gone(numbered(0), untouched_slot()));
}

// Behind the serial number stand the ids, which may have changed since.
TEST_F(AddDeleted, ASerialNumberThatFillsItsFieldIsComparedWithinIt) {
  Controller cached = numbered(0);
  cached.serial = filling(31, 'S');
  Controller cur = cached;
  cur.vendor_id = 0x4242;

  EXPECT_EQ(appended(0, 1, {summary(cur)}, {summary(cached)}), reply_with(0, 1));
}

TEST_F(AddDeleted, WithoutAReplyOrAListDoesNothing) {
  const CtlrSummary entry = summary(numbered(0));
  const Bytes before = reply_with(0, 1);
  std::vector<uint8_t> reply(before.data(), before.data() + before.size());

  add(nullptr, 1, &entry, 1, &entry);
  add(reply.data(), 0, nullptr, 1, &entry);
  add(reply.data(), 1, &entry, 1, nullptr);

  EXPECT_EQ(Bytes(reply), before);
}

}  // namespace
}  // namespace tests
