#include <gmock/gmock.h>

#include <filesystem>

#include "decoders/decoder_kinds.h"
#include "mcstore/command_line.h"
#include "mcstore/kinds/kind.h"

namespace tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Decode : public McstoreTest {
 protected:
  Decode() { std::filesystem::create_directory(files.real("/in")); }

  std::string command(const std::string &kinds = "") {
    return mcstore_command() + " decode " + files.real("/in") + " " + files.real("/out") + " " + kinds;
  }
  Outcome decode(const std::string &kinds = "") { return run(command(kinds)); }
  void store(const DecoderKind &kind, const Bytes &content) { files.write(std::string("/in/") + kind.store, content); }
  std::string text_path(const DecoderKind &kind) const {
    return files.real(std::string("/out/") + kind.store + "_decoded.txt");
  }
  std::string text(const DecoderKind &kind) const {
    return files.read(std::string("/out/") + kind.store + "_decoded.txt");
  }
};

// Each line of these texts was worked out from the store files' bytes by a program of its own.
TEST_F(Decode, OfTheSampleInventoryGivesTheTextsBesideIt) {
  const StoreDirectory demo;
  ASSERT_EQ(mcstore("collect " PROJECT_DIRECTORY "/docs/examples/inventory.json --root " + demo.real("")).exit_code, 0);

  EXPECT_EQ(mcstore("decode " + demo.real("/var") + " " + demo.real("/out")).exit_code, 0);

  for (const DecoderKind &kind : kDecoderKinds) {
    const std::string name = std::string(kind.store) + "_decoded.txt";
    const Outcome difference =
        run("diff " PROJECT_DIRECTORY "/docs/examples/decoded/" + name + " " + demo.real("/out/" + name));
    EXPECT_EQ(difference.out + difference.err, "");
  }
}

TEST_F(Decode, TellsInOneLineForEachKindWhatWasWritten) {
  const char *names[] = {"controllers", "drives", "virtual-drives", "bbus", "nvme-controllers", "nvme-drives"};
  for (size_t i = 0; i < std::size(names); ++i) {
    Bytes file = kDecoderKinds[i].file_of(2);
    if (const auto &count = mcstore::kind_named(names[i]).stored_count) file.put(count->offset, Bytes().u32(2));
    store(kDecoderKinds[i], file);
  }

  const Outcome outcome = decode();

  std::string report;
  for (size_t i = 0; i < std::size(names); ++i) {
    const DecoderKind &kind = kDecoderKinds[i];
    report += std::string(names[i]) + ": 2 records, " + std::to_string(kind.text_of(2).size()) + " bytes in " +
              text_path(kind) + "\n";
    EXPECT_EQ(text(kind), kind.text_of(2));
  }
  EXPECT_EQ(outcome.out, report);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST_F(Decode, TellsOfMissingFilesAndDoesNotFail) {
  store(kBbusDecoder, kBbusDecoder.file_of(1));

  const Outcome outcome = decode("drives bbus");

  EXPECT_EQ(outcome.out, "drives: " + files.real("/in/storphydrive_info") + " is missing\nbbus: 1 record, " +
                             std::to_string(full_battery_text().size()) + " bytes in " + text_path(kBbusDecoder) +
                             "\n");
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST_F(Decode, TakesOnlyTheKindsThatAreNamed) {
  for (const DecoderKind &kind : kDecoderKinds) store(kind, kind.file_of(1));

  EXPECT_THAT(decode("nvme-drives").out, StartsWith("nvme-drives: 1 record, "));

  EXPECT_FALSE(files.exists("/out/storctlr_info_decoded.txt"));
  EXPECT_TRUE(files.exists("/out/nvmephydrive_info_decoded.txt"));
}

TEST_F(Decode, FailsForAFileWithoutItsHeader) {
  store(kNvmeControllersDecoder, Bytes());
  store(kBbusDecoder, kBbusDecoder.file_of(1));

  const Outcome outcome = decode();

  EXPECT_THAT(outcome.out,
              HasSubstr("nvme-controllers: " + files.real("/in/nvmectlr_info") + " ends within its header\n"));
  EXPECT_THAT(outcome.out, HasSubstr("bbus: 1 record, "));
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, FailsForADirectory) {
  std::filesystem::create_directory(files.real("/in/storvirtdrive_info"));

  const Outcome outcome = decode("virtual-drives");

  EXPECT_EQ(outcome.out, "virtual-drives: " + files.real("/in/storvirtdrive_info") + " is not a file\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, FailsWhenATextCannotBeOpened) {
  store(kDrivesDecoder, kDrivesDecoder.file_of(2));
  files.write_text("/out/storphydrive_info_decoded.txt/inside", "");  // a directory that cannot be removed

  const Outcome outcome = decode("drives");

  EXPECT_EQ(outcome.out, "drives: cannot write " + text_path(kDrivesDecoder) + "\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, FailsWhenATextWithoutRecordsCannotBeOpened) {
  store(kControllersDecoder, kControllersDecoder.header);
  store(kBbusDecoder, kBbusDecoder.file_of(1));
  files.write_text("/out/storctlr_info_decoded.txt/inside", "");  // a directory that cannot be removed

  const Outcome outcome = decode("controllers bbus");

  EXPECT_THAT(outcome.out,
              StartsWith("controllers: cannot write " + text_path(kControllersDecoder) + "\nbbus: 1 record, "));
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, MindsNoWordsInAPath) {
  store(kBbusDecoder, kBbusDecoder.file_of(1));

  const Outcome outcome =
      mcstore("decode " + files.real("/in") + " '" + files.real("/error: unable to open file ") + "' bbus");

  EXPECT_THAT(outcome.out, StartsWith("bbus: 1 record, "));
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST_F(Decode, LeavesNoOlderTextOfAFileThatIsMissing) {
  files.write_text("/out/storBBU_info_decoded.txt", "old");

  EXPECT_THAT(decode("bbus").out, EndsWith("is missing\n"));

  EXPECT_FALSE(files.exists("/out/storBBU_info_decoded.txt"));
}

TEST_F(Decode, FailsWhenATextCannotBeWrittenInFull) {
  store(kDrivesDecoder, kDrivesDecoder.file_of(20));

  const Outcome outcome = run("trap '' XFSZ; ulimit -f 10; " + command("drives"));

  EXPECT_EQ(outcome.out, "drives: cannot write " + text_path(kDrivesDecoder) + ": File too large\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, MindsNoLinesInARecord) {
  const Bytes hostile = Bytes(kControllersDecoder.record).put_text(1, "\nSubsystem State: 0\n");
  store(kControllersDecoder, kControllersDecoder.header + hostile + hostile);

  const Outcome outcome = decode("controllers");

  EXPECT_THAT(outcome.out, StartsWith("controllers: 2 records, "));
  EXPECT_EQ(outcome.exit_code, 0);
}

// A decoder that writes this text instead of a line "record" for each record.
class DecodeCarelessly : public Decode {
 protected:
  Outcome decode(const std::string &kind, const std::string &text) {
    return run(text + " " + command(kind) + " --plugin " CARELESS_PLUGIN);
  }
};

TEST_F(DecodeCarelessly, SucceedsWithTheRightText) {
  store(kBbusDecoder, kBbusDecoder.file_of(2));

  EXPECT_THAT(decode("bbus", "CARELESS_TEXT='record\nrecord\n'").out, StartsWith("bbus: 2 records, 14 bytes in "));
}

TEST_F(DecodeCarelessly, FailsWhenARecordIsCut) {
  store(kBbusDecoder, kBbusDecoder.file_of(3));

  const Outcome outcome = decode("bbus", "CARELESS_TEXT='record\nrecord'");

  EXPECT_EQ(outcome.out, "bbus: only 1 of 3 records are in " + text_path(kBbusDecoder) + "\n");
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(text(kBbusDecoder), "record\nrecord");
}

TEST_F(DecodeCarelessly, FailsWhenNothingIsWritten) {
  store(kBbusDecoder, kBbusDecoder.file_of(3));

  const Outcome outcome = decode("bbus", "");

  EXPECT_EQ(outcome.out, "bbus: only 0 of 3 records are in " + text_path(kBbusDecoder) + "\n");
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_FALSE(files.exists("/out/storBBU_info_decoded.txt"));
}

TEST_F(DecodeCarelessly, FailsWhenThereIsMoreThanTheRecords) {
  store(kBbusDecoder, kBbusDecoder.file_of(1));

  const Outcome outcome = decode("bbus", "CARELESS_TEXT='record\nrecord\n'");

  EXPECT_EQ(outcome.out, "bbus: " + text_path(kBbusDecoder) + " is not the text of its records\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(DecodeCarelessly, FailsWhenTheSummaryIsCut) {
  store(kControllersDecoder, kControllersDecoder.header);

  const Outcome outcome = decode("controllers", "CARELESS_TEXT='Subsystem State: 2\nNum'");

  EXPECT_EQ(outcome.out, "controllers: " + text_path(kControllersDecoder) + " is not the text of its records\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, FailsWhenThereCanBeNoOutputDirectory) {
  files.write_text("/out", "a file");

  const Outcome outcome = decode();

  EXPECT_EQ(outcome.err, "mcstore: cannot make " + files.real("/out") + ": Not a directory\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(Decode, RefusesPathsThatWouldBeCut) {
  const std::string deep = "/" + std::string(150, 'a') + "/" + std::string(150, 'b');
  files.write(deep + "/storBBU_info", kBbusDecoder.record);

  const Outcome outcome = mcstore("decode " + files.real(deep) + " " + files.real("/out") + " bbus");

  EXPECT_EQ(outcome.out, "bbus: paths longer than 319 characters cannot be decoded\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

// The command "script" gives a program a terminal of its own.
class DecodeOnATerminal : public Decode {
 protected:
  void SetUp() override {
    if (run("script --quiet --return --command true /dev/null").exit_code != 0) GTEST_SKIP() << "no terminals here";
  }
  Outcome decode_on_a_terminal(const std::string &kinds) {
    return run("script --quiet --return --command '" + command(kinds) + "' /dev/null");
  }
};

TEST_F(DecodeOnATerminal, ShowsABarForALargeInput) {
  store(kVirtualDrivesDecoder, kVirtualDrivesDecoder.file_of(1600));

  const Outcome outcome = decode_on_a_terminal("virtual-drives");

  EXPECT_THAT(outcome.out, HasSubstr("[........................................] 0 %"));
  EXPECT_THAT(outcome.out, HasSubstr("[####################....................] 50 %"));
  EXPECT_THAT(outcome.out, HasSubstr("\r\033[Kvirtual-drives: 1600 records, "));  // wiped away
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST_F(DecodeOnATerminal, ShowsNoBarForASmallInput) {
  store(kBbusDecoder, kBbusDecoder.record);

  const Outcome outcome = decode_on_a_terminal("bbus");

  EXPECT_THAT(outcome.out, StartsWith("bbus: 1 record, "));
}

TEST_F(Decode, ShowsNoBarElsewhere) {
  store(kVirtualDrivesDecoder, kVirtualDrivesDecoder.file_of(1600));

  EXPECT_EQ(decode().err, "");
}

TEST_F(Decode, KnowsItsUsage) {
  EXPECT_EQ(mcstore("decode").exit_code, 2);
  EXPECT_EQ(mcstore("decode " + files.real("/nowhere") + " " + files.real("/out")).exit_code, 2);
  EXPECT_EQ(decode("expanders").exit_code, 2);
  EXPECT_EQ(decode("all").exit_code, 2);
  EXPECT_FALSE(files.exists("/out"));
}

}  // namespace
}  // namespace tests
