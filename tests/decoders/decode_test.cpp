#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;
using testing::ValuesIn;

// The calls that tell in which order a decoder goes about it.
std::vector<std::string> steps(const std::vector<std::string> &calls) {
  std::vector<std::string> steps;
  for (const std::string &call : calls)
    for (const char *function : {"unlink ", "fopen ", "stat ", "calloc", "fread", "flock", "fclose"})
      if (call.starts_with(function)) steps.push_back(call);
  return steps;
}

TEST_P(EveryDecoder, WritesTheSummaryAndThenEachRecord) {
  store(GetParam(), GetParam().file_of(2));

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().text_of(2));
  EXPECT_EQ(printed.result, 0);
  EXPECT_EQ(printed.err, "");
}

TEST_P(EveryDecoder, PrintsThePathForEachRaidRecord) {
  store(GetParam(), GetParam().file_of(2));

  EXPECT_EQ(decode(GetParam()).out, echoes(GetParam(), 2));
}

TEST_P(EveryDecoder, ReplacesTheTextOfAnEarlierRun) {
  store(GetParam(), GetParam().file_of(2));

  decode(GetParam());
  decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().text_of(2));
}

TEST_P(EveryDecoder, AppendsToATextThatCannotBeDeleted) {
  store(GetParam(), GetParam().file_of(1));
  files.write_text(output(GetParam()), "old\n");
  fail("unlink", 1, EACCES);

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), "old\n" + GetParam().text_of(1));
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

TEST_P(EveryDecoder, LeavesTheInputAsItIs) {
  store(GetParam(), GetParam().file_of(1));
  const std::string before = files.read(input(GetParam()));

  decode(GetParam());

  EXPECT_EQ(files.read(input(GetParam())), before);
}

TEST_P(EveryDecoder, GivesTheResultOfClosingTheInput) {
  store(GetParam(), GetParam().file_of(1));
  fail("fclose", GetParam().has_summary() ? 3 : 2, EIO);  // the text is closed before

  EXPECT_EQ(decode(GetParam()).result, EOF);
}

TEST_P(EveryDecoder, IgnoresWhatClosingTheTextGives) {
  store(GetParam(), GetParam().file_of(1));
  fail("fclose", 1, EIO);

  EXPECT_EQ(decode(GetParam()).result, 0);
}

TEST_P(EveryDecoder, IgnoresAPartialRecord) {
  store(GetParam(), GetParam().file_of(1) + Bytes::repeated(GetParam().record.size() - 1, 'x'));

  EXPECT_EQ(decode(GetParam()).result, 0);

  EXPECT_EQ(text(GetParam()), GetParam().summary(GetParam().file_of(2).size() - 1) + GetParam().record_text);
}

TEST_P(EveryDecoder, WritesTheSummaryAloneWithoutRecords) {
  store(GetParam(), GetParam().header);

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().summary(GetParam().header.size()));
  EXPECT_EQ(files.exists(output(GetParam())), GetParam().has_summary());
  EXPECT_EQ(printed.out, "");
  EXPECT_EQ(printed.result, 0);
}

// These kinds ask for one record's memory, however large the file is.
TEST_F(DecoderTest, TheCountIsThatOfAFileOfAnySize) {
  for (const DecoderKind &kind : {kNvmeControllersDecoder, kNvmeDrivesDecoder}) {
    store(kind, kind.header);
    files.resize(input(kind), 0x1'C000'0000);
    before_call("fread", kind.header.size() > 1 ? 3 : 2, [&] { files.resize(input(kind), kind.header.size()); });

    decode(kind);

    EXPECT_EQ(text(kind).substr(0, kind.summary(0x1'C000'0000).size()), kind.summary(0x1'C000'0000));
  }
}

// The header takes part in the division: here it makes up for the byte that the second record lacks.
TEST_F(DecoderTest, TheCountIsTheSizeDividedByTheRecords) {
  store(kControllersDecoder,
        kControllersDecoder.file_of(1) + Bytes::repeated(kControllersDecoder.record.size() - 1, 0));

  decode(kControllersDecoder);

  EXPECT_EQ(text(kControllersDecoder), "Subsystem State: 200\nNum controllers: 2\n" + full_controller_text());
}

TEST_F(DecoderTest, ABbuOfEachVariantHasItsOwnLines) {
  store(kBbusDecoder, full_battery_record(Bytes::Order::kLittle) + full_capacitor_record(Bytes::Order::kLittle));

  decode(kBbusDecoder);

  EXPECT_EQ(text(kBbusDecoder), full_battery_text() + full_capacitor_text());
}

TEST_P(EveryDecoder, DecodesAsManyRecordsAsThereAre) {
  for (const size_t records : {255u, 256u, 300u}) {
    store(GetParam(), GetParam().file_of(records));

    EXPECT_EQ(decode(GetParam()).result, 0);

    EXPECT_TRUE(text(GetParam()) == GetParam().text_of(records)) << records;  // too long to be shown
  }
}

TEST_P(EveryDecoder, TakesNoLock) {
  store(GetParam(), GetParam().file_of(1));

  decode(GetParam());

  EXPECT_THAT(calls(), Not(testing::Contains(testing::StartsWith("flock"))));
}

TEST_P(EveryDecoder, WorksWhileTheFileIsLocked) {
  store(GetParam(), GetParam().file_of(1));
  const int fd = open(files.real(input(GetParam())).c_str(), O_RDONLY);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);

  EXPECT_EQ(decode(GetParam()).result, 0);

  close(fd);
  EXPECT_EQ(text(GetParam()), GetParam().text_of(1));
}

TEST_P(EveryDecoder, TracesAndLogsNothing) {
  trace_at(9);
  store(GetParam(), GetParam().file_of(1));

  decode(GetParam());

  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), SizeIs(0));
}

TEST_P(EveryDecoder, RefusesANullDirectory) {
  store(GetParam(), GetParam().file_of(1));
  files.write_text(output(GetParam()), "old");

  EXPECT_EQ(decode(GetParam(), nullptr, "/out").result, MC_STORE_UNAVAILABLE);
  EXPECT_EQ(decode(GetParam(), "/in", nullptr).result, MC_STORE_UNAVAILABLE);

  EXPECT_THAT(calls(), SizeIs(0));
  EXPECT_EQ(text(GetParam()), "old");
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryDecoder, ValuesIn(kDecoderKinds), name_of);

// The text is deleted first; the memory of most kinds is asked for before anything is read.

TEST_F(DecoderTest, GoesThroughControllersOfBothFamiliesInThisOrder) {
  for (const DecoderKind &kind : {kControllersDecoder, kNvmeControllersDecoder}) {
    store(kind, kind.file_of(1));
    forget_calls();

    decode(kind);

    const std::string text = "fopen " + output(kind);
    EXPECT_THAT(steps(calls()),
                ElementsAre("unlink " + output(kind), "fopen " + input(kind), "stat " + input(kind), "calloc", "fread",
                            text, "fclose", "fread", text, "fclose", "fread", "fclose"));
  }
}

TEST_F(DecoderTest, GoesThroughDrivesInThisOrder) {
  store(kDrivesDecoder, kDrivesDecoder.file_of(1));

  decode(kDrivesDecoder);

  EXPECT_THAT(steps(calls()), ElementsAre("unlink /out/storphydrive_info_decoded.txt", "fopen /in/storphydrive_info",
                                          "stat /in/storphydrive_info", "fread", "calloc", "fread",
                                          "fopen /out/storphydrive_info_decoded.txt", "fclose", "fread", "fclose"));
}

TEST_F(DecoderTest, GoesThroughKindsWithoutAHeaderInThisOrder) {
  for (const DecoderKind &kind : {kVirtualDrivesDecoder, kBbusDecoder}) {
    store(kind, kind.file_of(1));
    forget_calls();

    decode(kind);

    EXPECT_THAT(steps(calls()), ElementsAre("unlink " + output(kind), "fopen " + input(kind), "stat " + input(kind),
                                            "calloc", "fread", "fopen " + output(kind), "fclose", "fread", "fclose"));
  }
}

TEST_F(DecoderTest, GoesThroughNvmeDrivesInThisOrder) {
  store(kNvmeDrivesDecoder, kNvmeDrivesDecoder.file_of(1));

  decode(kNvmeDrivesDecoder);

  EXPECT_THAT(steps(calls()), ElementsAre("unlink /out/nvmephydrive_info_decoded.txt", "fopen /in/nvmephydrive_info",
                                          "stat /in/nvmephydrive_info", "fread", "fread",
                                          "fopen /out/nvmephydrive_info_decoded.txt", "fclose", "calloc", "fread",
                                          "fopen /out/nvmephydrive_info_decoded.txt", "fclose", "fread", "fclose"));
}

}  // namespace
}  // namespace tests
