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
using mcstore::raw_value;
using mcstore::RawValue;

Field field(FieldType type, size_t width, const char *label = "value: %d\n") {
  return {.name = "value", .offset = 1, .width = width, .type = type, .label = label, .order = ByteOrder::kNetwork};
}

RawValue number(uint64_t value) { return value; }

std::span<const uint8_t> span(const Bytes &bytes) { return {bytes.data(), bytes.size()}; }

TEST(Value, NumbersFollowTheByteOrder) {
  const Bytes record = Bytes::hex("ff 01 02 03 04 05 06 07 08");

  EXPECT_EQ(raw_value(span(record), field(FieldType::kUnsigned, 2), Endian::kBig), number(0x0102));
  EXPECT_EQ(raw_value(span(record), field(FieldType::kUnsigned, 2), Endian::kLittle), number(0x0201));
  EXPECT_EQ(raw_value(span(record), field(FieldType::kUnsigned, 8), Endian::kBig), number(0x0102030405060708));
  EXPECT_EQ(raw_value(span(record), field(FieldType::kUnsigned, 8), Endian::kLittle), number(0x0807060504030201));
}

TEST(Value, SignedNumbersKeepTheirSign) {
  const Bytes record = Bytes::hex("00 ff fe 00 00");

  EXPECT_EQ(raw_value(span(record), field(FieldType::kSigned, 1), Endian::kBig), RawValue(int64_t{-1}));
  EXPECT_EQ(raw_value(span(record), field(FieldType::kSigned, 4), Endian::kBig), RawValue(int64_t{-131072}));
  EXPECT_EQ(cell_text(span(record), field(FieldType::kSigned, 1), Endian::kBig), "-1");
}

TEST(Value, LargeNumbersStayUnsigned) {
  const Bytes record = Bytes().u8(0).fill(8, 0xFF);

  EXPECT_EQ(raw_value(span(record), field(FieldType::kUnsigned, 8), Endian::kBig), number(UINT64_MAX));
  EXPECT_EQ(cell_text(span(record), field(FieldType::kUnsigned, 4), Endian::kBig), "4294967295");
}

TEST(Value, ATextEndsAtItsNulOrItsWidth) {
  const Bytes record = Bytes::hex("ff 41 42 00 43 44");

  EXPECT_EQ(raw_value(span(record), field(FieldType::kText, 5), Endian::kBig), RawValue("AB"));
  EXPECT_EQ(raw_value(span(record), field(FieldType::kText, 2), Endian::kBig), RawValue("AB"));
}

TEST(Value, ACellDisturbsNoTerminal) {
  const Bytes record = Bytes::hex("00 1b 5b 32 4a ff 7f");

  EXPECT_EQ(cell_text(span(record), field(FieldType::kText, 6), Endian::kBig), "\\x1b[2J\\xff\\x7f");
}

TEST(Value, FlagsAreNumbersAndWordsInACell) {
  const Field flag = field(FieldType::kFlag, 1, "value: %s\n");

  EXPECT_EQ(raw_value(span(Bytes::hex("00 02")), flag, Endian::kBig), number(2));
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
  EXPECT_EQ(raw_value(span(Bytes::hex("00 0a ff")), field(FieldType::kBytes, 2, nullptr), Endian::kBig),
            RawValue("0aff"));
}

}  // namespace
}  // namespace tests
