#include "mcstore/source/reply.h"

#include <gtest/gtest.h>

#include "host/bytes.h"
#include "mcstore/kinds/device.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"

namespace tests {
namespace {

using mcstore::Reply;

Reply parse(const std::string &kind, const Bytes &bytes) {
  return parse_reply(mcstore::kind_named(kind), {bytes.data(), bytes.size()});
}

std::string refusal_of(const Bytes &bytes, const std::string &kind = "controllers") {
  try {
    parse(kind, bytes);
  } catch (const mcstore::MalformedReply &error) {
    return error.what();
  }
  return "(accepted)";
}

TEST(Reply, HasTheRecordsAsTheStoreFileHasThem) {
  const Controller controller = {.index = 3, .name = "SLOT-3", .vendor_id = 0x1234, .stamp = 0x01020304};

  const Reply reply = parse("controllers", controller_reply(2, {Controller(), controller}));

  EXPECT_FALSE(reply.is_simulated);
  EXPECT_EQ(reply.state, 2u);
  EXPECT_EQ(Bytes(reply.records), Controller().stored() + controller.stored());
}

TEST(Reply, TurnsTheEntriesOfArrays) {
  const Bytes block = Bytes::hex("00 00 00 00 00 00 00 08");
  const Bytes sent = VirtualDrive().reported().put(94, Bytes().u8(1)).put(98, block);

  const Reply reply = parse("virtual-drives", virtual_drive_header(1) + sent);

  EXPECT_EQ(Bytes(reply.records).slice(98, 8), Bytes::hex("08 00 00 00 00 00 00 00"));
}

TEST(Reply, IsSimulatedWhenTheRecordSizeIsLittleEndian) {
  const Bytes record = Controller{.vendor_id = 0x0201}.stored();

  const Reply reply =
      parse("controllers", controller_header(1, 1).put(5, little_endian().u32(kControllerSize)) + record);

  EXPECT_TRUE(reply.is_simulated);
  EXPECT_EQ(Bytes(reply.records), record);
}

TEST(Reply, OfNoBytesHasNoDevices) {
  const Reply reply = parse("controllers", Bytes());

  EXPECT_TRUE(reply.records.empty());
  EXPECT_EQ(reply.state, std::nullopt);
}

TEST(Reply, CountsBeyondTheLargestCount) {
  Bytes records;
  for (size_t i = 0; i < 258; ++i) records += VirtualDrive().reported();

  const Reply reply = parse("virtual-drives", virtual_drive_header(2) + records);

  EXPECT_EQ(reply.records.size(), 258u * kVirtualDriveSize);
}

TEST(Reply, IsRefusedWhenItIsShorterThanItsHeader) {
  EXPECT_EQ(refusal_of(Bytes::repeated(17, 0)), "a reply of 17 bytes is shorter than its header");
  EXPECT_EQ(refusal_of(Bytes::repeated(19, 0), "drives"), "a reply of 19 bytes is shorter than its header");
}

TEST(Reply, IsRefusedWhenItsLengthDoesNotMatch) {
  EXPECT_EQ(refusal_of(controller_header(2, 1)),
            "a reply with 1 records has 18 bytes, not " + std::to_string(18 + kControllerSize));
  EXPECT_EQ(refusal_of(controller_header(2, 0).u8(0)), "a reply with 0 records has 19 bytes, not 18");
  EXPECT_EQ(refusal_of(controller_reply(2, {Controller(), Controller()}).put(4, Bytes().u8(1))),
            "a reply with 1 records has " + std::to_string(18 + 2 * kControllerSize) + " bytes, not " +
                std::to_string(18 + kControllerSize));
}

TEST(Reply, IsRefusedWhenItsRecordsAreOfAnotherSize) {
  EXPECT_EQ(refusal_of(controller_header(2, 0).put(5, big_endian().u32(kControllerSize + 1))),
            "the reply announces records of " + std::to_string(kControllerSize + 1) + " bytes, not of " +
                std::to_string(kControllerSize));
  EXPECT_EQ(refusal_of(controller_header(2, 0).put(5, big_endian().u32(0))),
            "the reply announces records of 0 bytes, not of " + std::to_string(kControllerSize));
}

}  // namespace
}  // namespace tests
