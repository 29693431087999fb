#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

using testing::ValuesIn;

class HostileInput : public EveryDecoder {};

TEST_P(HostileInput, ThatGrowsIsDecodedToTheSizeItHad) {
  store(GetParam(), GetParam().file_of(2));
  before_call("fread", 1, [&] { store(GetParam(), GetParam().file_of(5)); });

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().text_of(2));
  EXPECT_EQ(printed.result, 0);
}

TEST_P(HostileInput, ThatGrowsByPartsOfARecordIsDecodedToItsWholeOnes) {
  const Bytes partial = GetParam().file_of(1) + GetParam().record.slice(0, GetParam().record.size() - 1);
  store(GetParam(), partial);
  before_call("fread", 1, [&] { store(GetParam(), GetParam().file_of(2)); });

  decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().summary(partial.size()) + GetParam().record_text);
}

TEST_P(HostileInput, ThatWasEmptyHasNoRecordsHoweverItGrows) {
  store(GetParam(), Bytes());
  before_call("fread", 1, [&] { store(GetParam(), GetParam().file_of(2)); });

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().summary(0));
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

TEST_P(HostileInput, ThatShrinksIsDecodedToItsEnd) {
  store(GetParam(), GetParam().file_of(4));
  before_call("fread", 1, [&] { files.resize(input(GetParam()), GetParam().file_of(1).size()); });

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().summary(GetParam().file_of(4).size()) + GetParam().record_text);
  EXPECT_EQ(printed.result, 0);
}

TEST_P(HostileInput, ThatIsADirectoryHasNothingToRead) {
  std::filesystem::create_directory(files.real(input(GetParam())));

  const Printed printed = decode(GetParam());

  const bool has_header = GetParam().header.size() > 0;
  EXPECT_EQ(printed.err.find("Cannot read") != printed.err.npos, has_header);
  EXPECT_EQ(printed.result, 0);
  EXPECT_FALSE(files.exists(output(GetParam())));
}

TEST_F(DecoderTest, ADirectoryIsTheReasonThatIsTold) {
  std::filesystem::create_directory(files.real("/in/storctlr_info"));

  EXPECT_EQ(decode(kControllersDecoder).err, "Cannot read input file '/in/storctlr_info': Is a directory\n");
}

// A pipe's size is 0, whatever comes out of it.
TEST_P(HostileInput, ThatIsAPipeHasNoRecords) {
  const std::string pipe = files.real(input(GetParam()));
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int writer = open(pipe.c_str(), O_RDWR | O_CLOEXEC);
  const Bytes file = GetParam().file_of(1);
  const Bytes content = file.slice(0, std::min<size_t>(file.size(), 100));  // no pipe has too little room for that
  ASSERT_EQ(write(writer, content.data(), content.size()), static_cast<ssize_t>(content.size()));

  const Printed printed = decode(GetParam());

  close(writer);
  EXPECT_EQ(text(GetParam()), GetParam().summary(0));
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

TEST_P(HostileInput, OfAnyBytesIsDecodedRecordByRecord) {
  Bytes noise = Bytes::repeated(GetParam().header.size(), 0);
  for (const uint8_t byte : {uint8_t{0xFF}, uint8_t{0x01}, uint8_t{0x80}})
    noise += Bytes::repeated(GetParam().record.size(), byte);
  store(GetParam(), noise);

  const Printed printed = decode(GetParam());

  EXPECT_EQ(printed.result, 0);
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.out, echoes(GetParam(), 3));
  EXPECT_EQ(std::ranges::count(calls(), "fopen " + output(GetParam())), GetParam().has_summary() ? 4 : 3);
}

INSTANTIATE_TEST_SUITE_P(Kinds, HostileInput, ValuesIn(kDecoderKinds), name_of);

}  // namespace
}  // namespace tests
