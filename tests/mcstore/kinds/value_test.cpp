#include "mcstore/kinds/value.h"

#include <gtest/gtest.h>

#include "host/bytes.h"

namespace tests {
namespace {

using mcserver::ByteOrder;
using mcserver::Field;
using mcserver::FieldType;
using mcstore::raw_value;
using mcstore::RawValue;
using mcstore::Record;

Field field_at_one(FieldType type, size_t width) {
  return {.name = "value", .offset = 1, .width = width, .type = type, .label = nullptr, .order = ByteOrder::kNetwork};
}

Record record_in(const Bytes &bytes) { return {bytes.data(), bytes.size()}; }

RawValue raw_at_one(const Bytes &bytes, FieldType type, size_t width) {
  return raw_value(record_in(bytes), field_at_one(type, width));
}

std::string text_at_one(const Bytes &bytes, const Field &field) { return mcstore::text_of(record_in(bytes), field); }

TEST(Value, NumbersAreLittleEndian) {
  const Bytes record = Bytes::hex("ff 01 02 03 04 05 06 07 08");

  EXPECT_EQ(raw_at_one(record, FieldType::kUnsigned, 1), RawValue(uint64_t{1}));
  EXPECT_EQ(raw_at_one(record, FieldType::kUnsigned, 2), RawValue(uint64_t{0x0201}));
  EXPECT_EQ(raw_at_one(record, FieldType::kUnsigned, 8), RawValue(uint64_t{0x0807060504030201}));
}

TEST(Value, SignedNumbersKeepTheirSign) {
  const Bytes record = Bytes::hex("00 ff fe ff ff");

  EXPECT_EQ(raw_at_one(record, FieldType::kSigned, 1), RawValue(int64_t{-1}));
  EXPECT_EQ(raw_at_one(record, FieldType::kSigned, 2), RawValue(int64_t{-257}));
  EXPECT_EQ(raw_at_one(record, FieldType::kSigned, 4), RawValue(int64_t{-257}));
  EXPECT_EQ(text_at_one(record, field_at_one(FieldType::kSigned, 1)), "-1");
}

TEST(Value, LargeNumbersStayUnsigned) {
  const Bytes record = Bytes().u8(0).fill(8, 0xFF);

  EXPECT_EQ(raw_at_one(record, FieldType::kUnsigned, 8), RawValue(UINT64_MAX));
  EXPECT_EQ(text_at_one(record, field_at_one(FieldType::kUnsigned, 4)), "4294967295");
}

TEST(Value, ATextEndsAtItsNulOrItsWidth) {
  const Bytes record = Bytes::hex("ff 41 42 00 43 44");

  EXPECT_EQ(raw_at_one(record, FieldType::kText, 5), RawValue("AB"));
  EXPECT_EQ(raw_at_one(record, FieldType::kText, 2), RawValue("AB"));
}

TEST(Value, FlagsAreNumbersAndWords) {
  const Field flag = field_at_one(FieldType::kFlag, 1);

  EXPECT_EQ(raw_at_one(Bytes::hex("00 02"), FieldType::kFlag, 1), RawValue(uint64_t{2}));
  EXPECT_EQ(text_at_one(Bytes::hex("00 00"), flag), "false");
  EXPECT_EQ(text_at_one(Bytes::hex("00 01"), flag), "true");
  EXPECT_EQ(text_at_one(Bytes::hex("00 02"), flag), "true (2)");
}

TEST(Value, AFlagThatTheDumpInvertsIsShownAsItIs) {
  EXPECT_EQ(text_at_one(Bytes::hex("00 01"), field_at_one(FieldType::kInvertedFlag, 1)), "true");
}

TEST(Value, ATextIsInTheBaseAndTheUnitOfItsRow) {
  const Bytes record = Bytes::hex("00 00 01");
  Field number = field_at_one(FieldType::kUnsigned, 2);

  EXPECT_EQ(text_at_one(record, number), "256");
  number.meaning = {.base = mcserver::Base::kHexadecimal};
  EXPECT_EQ(text_at_one(record, number), "0x100");
  number.meaning = {.base = mcserver::Base::kBitSet};
  EXPECT_EQ(text_at_one(record, number), "0x100");
  number.meaning = {.unit = mcserver::Unit::kBytes};
  EXPECT_EQ(text_at_one(record, number), "256 B");
}

TEST(Value, ACodeIsItsWordOrItsNumber) {
  static constexpr mcserver::Word kWords[] = {{1, "one"}};
  Field code = field_at_one(FieldType::kUnsigned, 1);
  code.meaning = {.words = kWords};

  EXPECT_EQ(text_at_one(Bytes::hex("00 01"), code), "one");
  EXPECT_EQ(text_at_one(Bytes::hex("00 02"), code), "2");
}

TEST(Value, SomeValuesAreNone) {
  Field number = field_at_one(FieldType::kSigned, 1);
  number.meaning = {.none = {-1, 0}};

  EXPECT_EQ(text_at_one(Bytes::hex("00 ff"), number), "none");
  EXPECT_EQ(text_at_one(Bytes::hex("00 00"), number), "none");
  EXPECT_EQ(text_at_one(Bytes::hex("00 01"), number), "1");
}

TEST(Value, BytesAreHexadecimalDigits) {
  EXPECT_EQ(raw_at_one(Bytes::hex("00 0a ff"), FieldType::kBytes, 2), RawValue("0aff"));
}

}  // namespace
}  // namespace tests
