#include <gmock/gmock.h>

#include <cerrno>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;
using testing::Values;

// What each kind says. The path stands for %s, the reason for %m.
struct Messages {
  const DecoderKind *kind;
  std::string unopened;
  std::string unknown_size;  // empty: nothing is said
  std::string unreadable;    // of a file that ends in its header
  std::string read_error;    // of a header that cannot be read
  int failing_read;          // of its header
};

void PrintTo(const Messages &messages, std::ostream *out) { PrintTo(*messages.kind, out); }

const Messages kControllers = {
    &kControllersDecoder,
    "Cannot open input file '/in/storctlr_info': Permission denied\n",
    "stat(/in/storctlr_info) failed: Input/output error\n",
    "Cannot read input file '/in/storctlr_info': Success\n",
    "Cannot read input file '/in/storctlr_info': Input/output error\n",
    1,
};
const Messages kDrives = {
    &kDrivesDecoder,
    "Cannot open input file '/in/storphydrive_info': Permission denied\n",
    "",
    "Cannot read noofDrives from '/in/storphydrive_info': Success\n",
    "Cannot read noofDrives from '/in/storphydrive_info': Input/output error\n",
    1,
};
const Messages kVirtualDrives = {
    &kVirtualDrivesDecoder,
    "Cannot open input file '/in/storvirtdrive_info': Permission denied\n",
    "Cannot stat input file '/in/storvirtdrive_info': Input/output error\n",
    "",
    "",
    0,
};
const Messages kBbus = {
    &kBbusDecoder,
    "Cannot open input file '/in/storBBU_info': Permission denied\n",
    "stat(/in/storBBU_info) failed: Input/output error\n",
    "",
    "",
    0,
};
const Messages kNvmeControllers = {
    &kNvmeControllersDecoder,
    "Cannot open input file '/in/nvmectlr_info': Permission denied\n",
    "stat(/in/nvmectlr_info) failed: Input/output error\n",
    "Cannot read file '/in/nvmectlr_info': Success\n",
    "Cannot read file '/in/nvmectlr_info': Input/output error\n",
    1,
};
const Messages kNvmeDrives = {
    &kNvmeDrivesDecoder,
    "Cannot open file '/in/nvmephydrive_info': Permission denied\n",
    "stat(/in/nvmephydrive_info) failed: Input/output error\n",
    "Cannot read noofDrives from '/in/nvmephydrive_info'\n",
    "Cannot read nvme_subsystem_info from '/in/nvmephydrive_info'\n",
    2,
};

// Each test starts with a good input, and with a text of an earlier run.
class DecoderFailure : public DecoderTest {
 protected:
  void prepare(const DecoderKind &kind) {
    store(kind, kind.file_of(2));
    files.write_text(output(kind), "old");
  }
  void expect_message(const Printed &printed, const std::string &message) {
    EXPECT_EQ(printed.err, message);
    EXPECT_EQ(printed.out, "");
  }
  static int length(const std::string &message) { return static_cast<int>(message.size()); }
};

class EveryDecodersFailure : public DecoderFailure, public testing::WithParamInterface<Messages> {
 protected:
  const DecoderKind &kind() const { return *GetParam().kind; }
};

TEST_P(EveryDecodersFailure, ToOpenTheInputIsTold) {
  prepare(kind());
  fail("fopen", 1, EACCES);

  const Printed printed = decode(kind());

  expect_message(printed, GetParam().unopened);
  EXPECT_EQ(printed.result, length(GetParam().unopened));
  EXPECT_FALSE(files.exists(output(kind())));
  EXPECT_THAT(calls(), Not(Contains(StartsWith("stat"))));
}

TEST_P(EveryDecodersFailure, OfAMissingInputIsTold) {
  files.write_text(output(kind()), "old");
  std::string message = GetParam().unopened;
  message.replace(message.find("Permission denied"), 17, "No such file or directory");

  const Printed printed = decode(kind());

  expect_message(printed, message);
  EXPECT_EQ(printed.result, length(message));
  EXPECT_FALSE(files.exists(output(kind())));
}

TEST_P(EveryDecodersFailure, ToTellTheSizeClosesTheInput) {
  prepare(kind());
  fail("stat", 1, EIO);

  const Printed printed = decode(kind());

  expect_message(printed, GetParam().unknown_size);
  EXPECT_EQ(printed.result, GetParam().unknown_size.empty() ? 0 : length(GetParam().unknown_size));
  EXPECT_EQ(calls().back(), "fclose");
  EXPECT_THAT(calls(), Not(Contains("fread")));
  EXPECT_FALSE(files.exists(output(kind())));
}

TEST_P(EveryDecodersFailure, ToTellTheSizeGivesFclosesResultOnlyForDrives) {
  prepare(kind());
  fail("stat", 1, EIO);
  fail("fclose", 1, ENOSPC);

  const Printed printed = decode(kind());

  EXPECT_EQ(printed.err, GetParam().unknown_size);
  EXPECT_EQ(printed.result, GetParam().unknown_size.empty() ? EOF : length(GetParam().unknown_size));
}

TEST_P(EveryDecodersFailure, ToAllocateIsToldWithTheSize) {
  prepare(kind());
  fail("calloc", 1, ENOMEM);
  const size_t size = kind().record.size() + (kind().is_nvme ? 0 : kind().file_of(2).size());
  const std::string message = "calloc(" + std::to_string(size) + ") failed: Cannot allocate memory\n";

  const Printed printed = decode(kind());

  expect_message(printed, message);
  EXPECT_EQ(printed.result, GetParam().kind == &kDrivesDecoder ? 0 : length(message));
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_P(EveryDecodersFailure, ToAllocateGivesFclosesResultOnlyForDrives) {
  prepare(kind());
  fail("calloc", 1, ENOMEM);
  fail("fclose", &kind() == &kNvmeDrivesDecoder ? 2 : 1, EIO);

  const Printed printed = decode(kind());

  EXPECT_EQ(printed.result, GetParam().kind == &kDrivesDecoder ? EOF : length(printed.err));
}

TEST_P(EveryDecodersFailure, ToAllocateComesBeforeAllTextButForNvmeDrives) {
  prepare(kind());
  fail("calloc", 1, ENOMEM);

  decode(kind());

  EXPECT_EQ(text(kind()), &kind() == &kNvmeDrivesDecoder ? kind().summary(kind().file_of(2).size()) : "");
}

TEST_P(EveryDecodersFailure, ToOpenTheTextForARecordIsToldEachTime) {
  prepare(kind());
  const int first = kind().has_summary() ? 3 : 2;
  fail("fopen", first, EACCES);
  fail("fopen", first + 1, EACCES);
  const std::string told =
      "error: unable to open file " + output(kind()) + (kind().is_nvme ? ": Permission denied" : "");
  const std::string echoed = kind().is_nvme ? "" : output(kind()) + "\n";

  const Printed printed = decode(kind());

  EXPECT_EQ(printed.out, echoed + told + echoed + told);
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
  EXPECT_EQ(text(kind()), kind().summary(kind().file_of(2).size()));
}

TEST_P(EveryDecodersFailure, ToReadARecordEndsTheText) {
  prepare(kind());
  fail("fread", GetParam().failing_read + 2, EIO);

  const Printed printed = decode(kind());

  EXPECT_EQ(text(kind()), kind().summary(kind().file_of(2).size()) + kind().record_text);
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryDecodersFailure,
                         Values(kControllers, kDrives, kVirtualDrives, kBbus, kNvmeControllers, kNvmeDrives),
                         [](const auto &one) { return std::string(one.param.kind->decoder); });

class WholeFileInMemory : public DecoderFailure, public testing::WithParamInterface<DecoderKind> {};

// Fails on every machine: 32 bits have no addresses for so much.
TEST_P(WholeFileInMemory, ThatIsTooLargeIsToldAsTheLowHalfOfItsSize) {
  prepare(GetParam());
  files.resize(input(GetParam()), 0x1'C000'0000);
  fail("calloc", 1, ENOMEM);
  const int64_t low_half = 0xC000'0000 + static_cast<int64_t>(GetParam().record.size()) - 0x1'0000'0000;

  EXPECT_EQ(decode(GetParam()).err, "calloc(" + std::to_string(low_half) + ") failed: Cannot allocate memory\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, WholeFileInMemory,
                         Values(kControllersDecoder, kDrivesDecoder, kVirtualDrivesDecoder, kBbusDecoder), name_of);

class HeaderFailure : public EveryDecodersFailure {};

TEST_P(HeaderFailure, OfAnEmptyFileIsToldWithoutAReason) {
  files.write_text(output(kind()), "old");
  store(kind(), Bytes());
  inject("fopen", 1, {.fails = false, .error = EISDIR});  // a stale one

  const Printed printed = decode(kind());

  expect_message(printed, GetParam().unreadable);
  EXPECT_EQ(printed.result, 0);
  EXPECT_FALSE(files.exists(output(kind())));
}

TEST_P(HeaderFailure, OfAnErrorIsTold) {
  prepare(kind());
  fail("fread", GetParam().failing_read, EIO);

  const Printed printed = decode(kind());

  expect_message(printed, GetParam().read_error);
  EXPECT_EQ(printed.result, 0);
  EXPECT_FALSE(files.exists(output(kind())));
}

TEST_P(HeaderFailure, GivesTheResultOfClosingTheInput) {
  store(kind(), Bytes());
  fail("fclose", 1, EIO);

  EXPECT_EQ(decode(kind()).result, EOF);
}

TEST_P(HeaderFailure, OfAPartialHeaderIsToldToo) {
  store(kind(), kind().header.slice(0, kind().header.size() - 1));

  const std::string message = GetParam().failing_read == 2 ? GetParam().read_error : GetParam().unreadable;

  expect_message(decode(kind()), message);
}

INSTANTIATE_TEST_SUITE_P(Kinds, HeaderFailure, Values(kControllers, kDrives, kNvmeControllers, kNvmeDrives),
                         [](const auto &one) { return std::string(one.param.kind->decoder); });

class SummaryFailure : public DecoderFailure, public testing::WithParamInterface<DecoderKind> {};

TEST_P(SummaryFailure, ToOpenTheTextSkipsItsTwoLines) {
  prepare(GetParam());
  fail("fopen", 2, EACCES);

  const Printed printed = decode(GetParam());

  EXPECT_EQ(text(GetParam()), GetParam().record_text + GetParam().record_text);
  EXPECT_EQ(printed.out, echoes(GetParam(), 2));
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SummaryFailure,
                         Values(kControllersDecoder, kNvmeControllersDecoder, kNvmeDrivesDecoder), name_of);

}  // namespace
}  // namespace tests
