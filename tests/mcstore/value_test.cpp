#include "mcstore/value.h"

#include <gtest/gtest.h>

#include "host/bytes.h"

namespace tests {
namespace {

using mcserver::ByteOrder;
using mcserver::Field;
using mcserver::FieldType;
using mcstore::cell_text;
using mcstore::Endian;
using mcstore::json_value;

Field field(FieldType type, size_t width, const char *label = "value: %d\n") {
  return {.name = "value", .offset = 1, .width = width, .type = type, .label = label, .order = ByteOrder::kNetwork};
}

std::span<const uint8_t> span(const Bytes &bytes) { return {bytes.data(), bytes.size()}; }

TEST(Value, NumbersFollowTheByteOrder) {
  const Bytes record = Bytes::hex("ff 01 02 03 04 05 06 07 08");

  EXPECT_EQ(json_value(span(record), field(FieldType::kUnsigned, 2), Endian::kBig), 0x0102);
  EXPECT_EQ(json_value(span(record), field(FieldType::kUnsigned, 2), Endian::kLittle), 0x0201);
  EXPECT_EQ(json_value(span(record), field(FieldType::kUnsigned, 8), Endian::kBig), 0x0102030405060708u);
  EXPECT_EQ(json_value(span(record), field(FieldType::kUnsigned, 8), Endian::kLittle), 0x0807060504030201u);
}

TEST(Value, SignedNumbersKeepTheirSign) {
  const Bytes record = Bytes::hex("00 ff fe 00 00");

  EXPECT_EQ(json_value(span(record), field(FieldType::kSigned, 1), Endian::kBig), -1);
  EXPECT_EQ(json_value(span(record), field(FieldType::kSigned, 4), Endian::kBig), -131072);
  EXPECT_EQ(cell_text(span(record), field(FieldType::kSigned, 1), Endian::kBig), "-1");
}

TEST(Value, LargeNumbersStayUnsigned) {
  const Bytes record = Bytes().u8(0).fill(8, 0xFF);

  EXPECT_EQ(json_value(span(record), field(FieldType::kUnsigned, 8), Endian::kBig).dump(), "18446744073709551615");
  EXPECT_EQ(cell_text(span(record), field(FieldType::kUnsigned, 4), Endian::kBig), "4294967295");
}

TEST(Value, ATextEndsAtItsNulOrItsWidth) {
  const Bytes record = Bytes::hex("ff 41 42 00 43 44");

  EXPECT_EQ(json_value(span(record), field(FieldType::kText, 5), Endian::kBig), "AB");
  EXPECT_EQ(json_value(span(record), field(FieldType::kText, 2), Endian::kBig), "AB");
}

TEST(Value, JsonIsValidWhateverATextHolds) {
  const Bytes record = Bytes::hex("00 22 5c 0a ff c3 a9");

  const std::string json = mcstore::dump_json(json_value(span(record), field(FieldType::kText, 6), Endian::kBig));

  EXPECT_EQ(json, "\"\\\"\\\\\\n\xEF\xBF\xBD\xC3\xA9\"");
  EXPECT_EQ(mcstore::Json::parse(json).get<std::string>(), "\"\\\n\xEF\xBF\xBD\xC3\xA9");
}

TEST(Value, ACellDisturbsNoTerminal) {
  const Bytes record = Bytes::hex("00 1b 5b 32 4a ff 7f");

  EXPECT_EQ(cell_text(span(record), field(FieldType::kText, 6), Endian::kBig), "\\x1b[2J\\xff\\x7f");
}

TEST(Value, FlagsAreRawInJsonAndWordsInACell) {
  const Field flag = field(FieldType::kFlag, 1, "value: %s\n");

  EXPECT_EQ(json_value(span(Bytes::hex("00 02")), flag, Endian::kBig), 2);
  EXPECT_EQ(cell_text(span(Bytes::hex("00 00")), flag, Endian::kBig), "false");
  EXPECT_EQ(cell_text(span(Bytes::hex("00 01")), flag, Endian::kBig), "true");
  EXPECT_EQ(cell_text(span(Bytes::hex("00 02")), flag, Endian::kBig), "true (2)");
}

TEST(Value, AFlagThatTheDumpInvertsIsShownAsItIs) {
  EXPECT_EQ(cell_text(span(Bytes::hex("00 01")), field(FieldType::kInvertedFlag, 1, "value: %s\n"), Endian::kBig),
            "true");
}

TEST(Value, ACellIsInTheBaseOfItsRow) {
  const Bytes record = Bytes::hex("00 01 00");
  mcserver::Field number = field(FieldType::kUnsigned, 2, "value: 0x%x\n");

  EXPECT_EQ(cell_text(span(record), number, Endian::kBig), "256");
  number.meaning.base = mcserver::Base::kHexadecimal;
  EXPECT_EQ(cell_text(span(record), number, Endian::kBig), "0x100");
  number.meaning.base = mcserver::Base::kBitSet;
  EXPECT_EQ(cell_text(span(record), number, Endian::kBig), "0x100");
}

TEST(Value, BytesAreHexadecimalDigits) {
  EXPECT_EQ(json_value(span(Bytes::hex("00 0a ff")), field(FieldType::kBytes, 2, nullptr), Endian::kBig), "0aff");
}

}  // namespace
}  // namespace tests
