#include "mcstore/reply.h"

#include <gtest/gtest.h>

#include "host/bytes.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

using mcstore::MalformedReply;
using mcstore::parse_reply;
using mcstore::ParsedReply;
using mcstore::RawValue;

ParsedReply parse(const std::string &kind, const std::string &bytes) {
  return parse_reply(mcstore::kind_named(kind), bytes);
}

RawValue raw(const ParsedReply &reply, size_t device, size_t value) {
  return std::get<RawValue>(reply.devices.at(device).values.at(value).raw);
}

std::string text_of(const Bytes &bytes) { return {bytes.data(), bytes.data() + bytes.size()}; }

std::string complaint(const std::string &kind, const std::string &bytes) {
  try {
    parse(kind, bytes);
  } catch (const MalformedReply &error) {
    return error.what();
  }
  return "(accepted)";
}

// ------------------------------------------------------------------------------------------------ packed replies

Bytes header(uint8_t count) {
  return Bytes::hex("28 00 00 02").u8(count) + big_endian().u32(kControllerSize).fill(9, 0);
}

std::string binary_complaint(const Bytes &bytes) { return complaint("controllers", text_of(bytes)); }

TEST(BinaryReply, HasTheRecordsBehindTheHeader) {
  const std::string bytes =
      text_of(header(2) + Bytes::repeated(kControllerSize, 1) + Bytes::repeated(kControllerSize, 2));

  const ParsedReply reply = parse("controllers", bytes);

  EXPECT_EQ(reply.bytes, bytes);
  EXPECT_FALSE(reply.is_simulated);
  EXPECT_EQ(reply.state, RawValue(uint64_t{2}));
  ASSERT_EQ(reply.devices.size(), 2u);
  EXPECT_EQ(reply.devices[0].text("vendor_id"), "0x101");
  EXPECT_EQ(reply.devices[1].text("life_left_in_days"), "514 days");
}

TEST(BinaryReply, IsSimulatedWhenTheRecordSizeIsLittleEndian) {
  const Bytes record = Bytes::repeated(kControllerSize, 0).put(255, Bytes::hex("01 02"));

  const ParsedReply reply =
      parse("controllers", text_of(header(1).put(5, little_endian().u32(kControllerSize)) + record));

  EXPECT_TRUE(reply.is_simulated);
  EXPECT_EQ(reply.devices.at(0).text("vendor_id"), "0x201");
}

TEST(BinaryReply, OfNoBytesHasNoDevices) {
  const ParsedReply reply = parse("controllers", "");

  EXPECT_TRUE(reply.devices.empty());
  EXPECT_EQ(reply.state, std::nullopt);
}

TEST(BinaryReply, IsRefusedWhenItsLengthDoesNotMatch) {
  EXPECT_EQ(binary_complaint(Bytes::repeated(17, 0)), "a reply of 17 bytes is shorter than its header");
  EXPECT_EQ(binary_complaint(header(1)),
            "a reply with 1 records has " + std::to_string(18 + kControllerSize) + " bytes, not 18");
  EXPECT_EQ(binary_complaint(header(0).u8(0)), "a reply with 0 records has 18 bytes, not 19");
}

TEST(BinaryReply, IsRefusedWhenItsRecordsAreOfAnotherSize) {
  EXPECT_EQ(binary_complaint(header(0).put(5, big_endian().u32(kControllerSize + 1))),
            "the reply announces records of " + std::to_string(kControllerSize + 1) + " bytes, not of " +
                std::to_string(kControllerSize));
}

// --------------------------------------------------------------------------------------------------- XML replies

TEST(XmlReply, HasAnElementForEachDevice) {
  const ParsedReply reply = parse("nvme-controllers",
                                  "<NVME-ctlr-summary count=\"2\" state=\"Main_Power\" />"
                                  "<NVME-ctlr controller-name=\"A\" drive-count=\"4\" component-id=\"1f\" />"
                                  "<NVME-ctlr controller-name=\"B\" switch-status-desc=\"PCIe error\" />");

  EXPECT_EQ(reply.state, RawValue("Main_Power"));
  ASSERT_EQ(reply.devices.size(), 2u);
  EXPECT_EQ(reply.devices[0].text("controller_name"), "A");
  EXPECT_EQ(reply.devices[0].text("component_id"), "1f");
  EXPECT_EQ(raw(reply, 0, 1), RawValue(uint64_t{4}));
  EXPECT_EQ(raw(reply, 0, 2), RawValue(uint64_t{0x1F}));
  EXPECT_EQ(reply.devices[0].text("switch_status_desc"), "");
  EXPECT_EQ(raw(reply, 1, 1), RawValue("PCIe error"));
}

TEST(XmlReply, TakesNumbersWithAPrefix) {
  const ParsedReply reply = parse("nvme-drives",
                                  "<NVME-phy-drive-summary count=\"1\" state=\"\" />"
                                  "<NVME-phy-drive vendor-id=\"0x1234\" temperature=\"35\" status=\"Optimal\" />");

  EXPECT_EQ(raw(reply, 0, 0), RawValue(uint64_t{0x1234}));
  EXPECT_EQ(raw(reply, 0, 1), RawValue(uint64_t{35}));
  EXPECT_EQ(raw(reply, 0, 2), RawValue("Optimal"));
}

TEST(XmlReply, IsRefusedWhenItIsNotWellFormed) {
  EXPECT_EQ(
      complaint("nvme-drives", "<NVME-phy-drive-summary count=\"1\" state=\"\" /><NVME-phy-drive vendor=\"a\"b\" />"),
      "the reply is not well-formed XML: Error parsing element attribute at byte 71");
}

TEST(XmlReply, IsRefusedWhenATextMadeAnElement) {
  EXPECT_EQ(complaint("nvme-drives",
                      "<NVME-phy-drive-summary count=\"1\" state=\"\" /><NVME-phy-drive vendor=\"\" />"
                      "<NVME-phy-drive serial-number=\"forged\" />"),
            "the reply announces 1 devices and has 2 elements");
}

TEST(XmlReply, IsRefusedWhenATextMadeAnAttribute) {
  EXPECT_EQ(complaint("nvme-drives",
                      "<NVME-phy-drive-summary count=\"1\" state=\"\" />"
                      "<NVME-phy-drive vendor=\"\" status=\"Optimal\" vendor=\"\" />"),
            "an element has two attributes vendor");
}

}  // namespace
}  // namespace tests
