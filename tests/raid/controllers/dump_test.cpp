#include <gmock/gmock.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "host/printed.h"
#include "raid/controllers/controller_test.h"
#include "raid/controllers/full_record.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::ValuesIn;

constexpr char kRecordMarker[] = "/var/mctool_stordebug";
constexpr char kRecordDump[] = "/var/mctool_stordebug.txt";
constexpr char kListMarker[] = "/var/mctool_ctlrdebug";
constexpr char kListDump[] = "/var/mctool_ctlrdebug.txt";

Bytes full_record() { return full_controller_record(Bytes::Order::kLittle); }

// A supported controller without anything else.
Bytes empty_record() { return Bytes::repeated(kControllerSize, 0).put(104, Bytes().u8(1)); }

class ControllerDump : public ControllerTest {
 protected:
  void print(const void *record, FILE *stream) {
    PLUGIN(print_ctlrinfo)(static_cast<const StorCtlrInfo *>(record), stream);
  }

  // Other bytes follow the record; they are not to be shown.
  std::string text_of(const Bytes &record) {
    const Bytes memory = record + Bytes::repeated(64, '!');
    return printed([&](FILE *stream) { print(memory.data(), stream); });
  }

  // The lines of the dump that contain this.
  std::vector<std::string> lines_with(const std::string &part, const Bytes &record) {
    std::istringstream text(text_of(record));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
      if (line.find(part) != std::string::npos) lines.push_back(line);
    return lines;
  }

  void append(const Bytes &record) { print(record.data(), nullptr); }

  void make_marker(const std::string &path) {
    files.write_text(path, "");
    forget_calls();
  }
};

// ------------------------------------------------------------------------------------------------------ the text

TEST_F(ControllerDump, ShowsEveryFieldOfASupportedController) {
  EXPECT_EQ(text_of(full_record()), full_controller_text());
}

class UnsupportedControllerDump : public ControllerDump, public testing::WithParamInterface<uint8_t> {};

TEST_P(UnsupportedControllerDump, EndsWithTheThirdLine) {
  const Bytes record = full_record().put(104, Bytes().u8(GetParam()));

  EXPECT_EQ(text_of(record), "controller: SLOT-7\nsmbios_pcislotname: PCI-3\nis-supported: true\n");
}

INSTANTIATE_TEST_SUITE_P(, UnsupportedControllerDump, testing::Values(2, 3, 0x80, 0xFF));

TEST_F(ControllerDump, SaysWhenAControllerIsNotSupported) {
  const Bytes record = full_record().put(104, Bytes().u8(0));

  EXPECT_EQ(text_of(record), "controller: SLOT-7\nsmbios_pcislotname: PCI-3\nis-supported: false\n");
}

TEST_F(ControllerDump, ShowsEmptyTextsBetweenTheirBlanksAndQuotes) {
  EXPECT_THAT(lines_with("controller: ", empty_record()), ElementsAre("controller: "));
  EXPECT_THAT(lines_with("smbios_pcislotname_ext", empty_record()), ElementsAre("smbios_pcislotname_ext: '' "));
}

// ------------------------------------------------------------------------------------------------------ flags

struct Flag {
  size_t offset;
  const char *label;
};

void PrintTo(const Flag &flag, std::ostream *out) { *out << flag.offset << ' ' << flag.label; }

constexpr Flag kFlags[] = {
    {771, "cluster-enable"},
    {774, "expose-enclosure-devices"},
    {775, "maintain-pd-fail-history"},
    {776, "maintain-pd-fail-history"},
    {777, "enable-copyback-to-ssd-on-smart-error"},
    {779, "spin-down-unconfigured"},
    {780, "enable-ssd-patrol-read"},
    {781, "auto-enhanced-import"},
    {786, "nvram-present"},
    {787, "serial-debugger-present"},
    {788, "memory-present"},
    {789, "flash-present"},
    {811, "controller-temperature-sensor-present"},
    {812, "ROC-temperature-sensor-present"},
    {813, "drive-temperature-supported"},
    {826, "has-sas-expander"},
};

class ControllerFlagDump : public ControllerDump, public testing::WithParamInterface<Flag> {
 protected:
  // Every flag is off, so that disable-ncq is shown as true.
  Bytes record_with(uint8_t value) const { return empty_record().put(GetParam().offset, Bytes().u8(value)); }

  // In the order of the record.
  std::vector<std::string> true_lines() const {
    const std::string line = GetParam().label + std::string(": true");
    const std::string inverted = "disable-ncq: true";
    if (GetParam().offset < 778) return {"is-supported: true", line, inverted};
    return {"is-supported: true", inverted, line};
  }
};

TEST_P(ControllerFlagDump, IsTrueWhenItIsOne) { EXPECT_EQ(lines_with(": true", record_with(1)), true_lines()); }

TEST_P(ControllerFlagDump, IsTrueWhenItIsAnythingButZero) {
  EXPECT_EQ(lines_with(": true", record_with(0x80)), true_lines());
}

TEST_P(ControllerFlagDump, IsFalseWhenItIsZero) {
  const Bytes all_but_one = full_record().put(GetParam().offset, Bytes().u8(0));

  EXPECT_THAT(lines_with(": false", all_but_one),
              testing::UnorderedElementsAre("disable-ncq: false", GetParam().label + std::string(": false")));
}

INSTANTIATE_TEST_SUITE_P(, ControllerFlagDump, ValuesIn(kFlags));

TEST_F(ControllerDump, ShowsDisableNcqInverted) {
  EXPECT_THAT(lines_with("ncq", empty_record()), ElementsAre("disable-ncq: true"));
  EXPECT_THAT(lines_with("ncq", empty_record().put(778, Bytes().u8(1))), ElementsAre("disable-ncq: false"));
  EXPECT_THAT(lines_with("ncq", empty_record().put(778, Bytes().u8(0x80))), ElementsAre("disable-ncq: false"));
}

TEST_F(ControllerDump, ShowsTwoFlagsUnderOneLabel) {
  const Bytes first = empty_record().put(775, Bytes().u8(1));
  const Bytes second = empty_record().put(776, Bytes().u8(1));

  EXPECT_THAT(lines_with("fail-history", first),
              ElementsAre("maintain-pd-fail-history: true", "maintain-pd-fail-history: false"));
  EXPECT_THAT(lines_with("fail-history", second),
              ElementsAre("maintain-pd-fail-history: false", "maintain-pd-fail-history: true"));
}

// ------------------------------------------------------------------------------------------------------ numbers

TEST_F(ControllerDump, ShowsSizesAsOneNumberOfTwoHalves) {
  const Bytes low_half = empty_record().put(790, little_endian().u64(0x80000000).u64(0xFFFFFFFF));
  const Bytes high_half = empty_record().put(790, little_endian().u64(0x100000000).u64(0x7FFFFFFF00000000));

  EXPECT_THAT(lines_with("memory-size", low_half),
              ElementsAre("memory-size: 2147483648 bytes", "cache-memory-size: 4294967295 bytes"));
  EXPECT_THAT(lines_with("memory-size", high_half),
              ElementsAre("memory-size: 4294967296 bytes", "cache-memory-size: 9223372032559808512 bytes"));
}

TEST_F(ControllerDump, ShowsSizesAsSignedNumbers) {
  const Bytes record = empty_record().put(790, little_endian().u64(0xFFFFFFFFFFFFFFFF).u64(0x8000000000000000));

  EXPECT_THAT(lines_with("memory-size", record),
              ElementsAre("memory-size: -1 bytes", "cache-memory-size: -9223372036854775808 bytes"));
}

TEST_F(ControllerDump, ShowsSetsOfBitsWithoutLeadingZeros) {
  const Bytes record = empty_record()
                           .put(834, little_endian().u64(0x00000000000000FF).u64(0x0000000100000000))
                           .put(866, little_endian().u64(0x00000001).u64(0x80000000).u64(0).u16(0x000A));

  EXPECT_THAT(lines_with("strip_size", record),
              ElementsAre("supported_strip_sizes: ff ", "default_strip_size: 100000000 "));
  EXPECT_THAT(lines_with("_ops", record), ElementsAre("supported_ctlr_ops: 0x1", "supported_phys_ops: 0x80000000",
                                                      "supported_virt_ops: 0x0", "supported_bbu_ops: 0xa"));
}

TEST_F(ControllerDump, ShowsNegativeNumbers) {
  const Bytes record = empty_record()
                           .put(817, Bytes().u8(0xFF))
                           .put(827, little_endian().u32(0x80000000))
                           .put(1288, little_endian().u32(0xFFFFFFFF));

  EXPECT_THAT(lines_with("percent-complete", record), ElementsAre("patrol-read-percent-complete: -1"));
  EXPECT_THAT(lines_with("Mod timestamp", record), ElementsAre("Mod timestamp = -2147483648"));
  EXPECT_THAT(lines_with("Max Virtual", record), ElementsAre("Max Virtual Drives per Controller = -1"));
}

TEST_F(ControllerDump, ShowsUnsignedNumbersWithoutASign) {
  const Bytes record = empty_record()
                           .put(0, Bytes().u8(0xFF))
                           .put(759, little_endian().u16(0xFFFF))
                           .put(782, little_endian().u32(0xFFFFFFFF));

  EXPECT_THAT(lines_with("index", record), ElementsAre("index: 255"));
  EXPECT_THAT(lines_with("poll-interval", record), ElementsAre("predictive-fail-poll-interval: 65535 sec"));
  EXPECT_THAT(lines_with("raid_levels", record), ElementsAre("raid_levels_supported: 0xffffffff"));
}

// ------------------------------------------------------------------------------------------------------ long texts

TEST_F(ControllerDump, RunsOnFromATextThatFillsItsField) {
  const Bytes record = full_record().put(1, Bytes().text(filling(16, 'C'), 16));

  EXPECT_THAT(lines_with("controller: ", record), ElementsAre("controller: CCCCCCCCCCCCCCCCPCI-3"));
}

TEST_F(ControllerDump, RunsOnThroughNumbersUntilTheFirstZero) {
  const Bytes record = full_record().put(23, Bytes().text(filling(81, 'P'), 81));

  EXPECT_THAT(lines_with("product-name", record),
              ElementsAre("product-name: " + filling(81, 'P') + "\x01\x82\x83" + "FW20K81377"));
}

TEST_F(ControllerDump, RunsOnToTheEndOfTheRecordAndNoFurther) {
  const Bytes record = full_record().put(1223, Bytes().text(filling(64, 'E'), 64));

  EXPECT_THAT(text_of(record), HasSubstr("controller-error_v22: " + filling(64, 'E') +
                                         "\x94\x04\x03\xA2\x01\x3C\x8C\nJBOD Mode: 148\n"));
}

// The record alone, so that a read beyond it is seen.
TEST_F(ControllerDump, ReadsNothingBeyondTheRecord) {
  const Bytes record = Bytes::repeated(kControllerSize, 'x').put(104, Bytes().u8(1));
  const std::vector<uint8_t> exactly(record.data(), record.data() + record.size());
  make_marker(kRecordMarker);

  print(exactly.data(), nullptr);

  EXPECT_THAT(files.read(kRecordDump), HasSubstr("controller-error_v22: " + filling(64 + 7, 'x') + "\n"));
}

// ------------------------------------------------------------------------------------------------------ where it goes

TEST_F(ControllerDump, LeavesTheStreamOpenAndTheDumpFileAlone) {
  make_marker(kRecordMarker);
  FILE *const stream = tmpfile();

  print(full_record().data(), stream);

  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_THAT(calls(), Not(Contains("fclose")));
  EXPECT_THAT(calls(), Not(Contains(HasSubstr("stat"))));
  EXPECT_NE(fputs("more\n", stream), EOF);
  fclose(stream);
}

TEST_F(ControllerDump, CostsOneLookWithoutAMarker) {
  append(full_record());

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug"));
  EXPECT_FALSE(files.exists(kRecordDump));
}

TEST_F(ControllerDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kRecordDump, "before\n");
  make_marker(kRecordMarker);

  append(full_record());
  append(full_record().put(104, Bytes().u8(0)));
  files.remove(kRecordMarker);
  append(full_record());

  EXPECT_EQ(files.read(kRecordDump), "before\n" + full_controller_text() +
                                         "controller: SLOT-7\nsmbios_pcislotname: PCI-3\nis-supported: false\n");
}

TEST_F(ControllerDump, OpensAndClosesItsFile) {
  make_marker(kRecordMarker);

  append(full_record());

  EXPECT_EQ(calls().at(0), "stat /var/mctool_stordebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_stordebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(ControllerDump, WritesNothingOfANullRecord) {
  make_marker(kRecordMarker);
  FILE *const stream = tmpfile();

  print(nullptr, nullptr);
  print(nullptr, stream);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_EQ(ftell(stream), 0);
  fclose(stream);
}

TEST_F(ControllerDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker(kRecordMarker);
  trace_at(9);
  fail("fopen", 1, EACCES);

  append(full_record());

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug", "fopen /var/mctool_stordebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(ControllerDump, ShowsNumbersAsTheyAreInTheFile) {
  make_marker(kRecordMarker);
  files.write(kControllerStore, Bytes().u8(kReady) + full_record());

  full();

  EXPECT_EQ(files.read(kRecordDump), full_controller_text());
}

// ------------------------------------------------------------------------------------------------------ lists

class ControllerListDump : public ControllerDump {
 protected:
  // Only the indices differ from all that lies between them.
  static std::vector<CtlrSummary> list_of(const std::vector<uint8_t> &indices) {
    std::vector<CtlrSummary> list(indices.size());
    for (size_t i = 0; i < indices.size(); ++i) {
      memset(&list[i], '!', sizeof list[i]);
      list[i].index = indices[i];
    }
    return list;
  }

  void print_list(const std::vector<CtlrSummary> &list, const char *title) {
    print_list(list.data(), static_cast<int32_t>(list.size()), title);
  }
  void print_list(const CtlrSummary *list, int32_t count, const char *title) {
    PLUGIN(print_ctlr_list)(list, count, title);
  }
};

TEST_F(ControllerListDump, ShowsTheTitleAndTheIndices) {
  make_marker(kListMarker);

  print_list(list_of({0, 1, 2}), "cur_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cur_ctlr_list \n[0]  [1]  [2]  \n");
}

TEST_F(ControllerListDump, ShowsIndicesUpTo255InTheOrderOfTheList) {
  make_marker(kListMarker);

  print_list(list_of({255, 7, 128}), "After swap, cached_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n After swap, cached_ctlr_list \n[255]  [7]  [128]  \n");
}

TEST_F(ControllerListDump, ShowsNoMoreThanTheCount) {
  make_marker(kListMarker);

  print_list(list_of({4, 5, 6}).data(), 2, "cached_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cached_ctlr_list \n[4]  [5]  \n");
}

TEST_F(ControllerListDump, OfNoEntriesIsATitleAndANewline) {
  make_marker(kListMarker);

  print_list(list_of({4}).data(), 0, "cur_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cur_ctlr_list \n\n");
}

TEST_F(ControllerListDump, CopiesATitleAsItIs) {
  make_marker(kListMarker);

  print_list(list_of({1}), "100%d %s");

  EXPECT_EQ(files.read(kListDump), "\n 100%d %s \n[1]  \n");
}

TEST_F(ControllerListDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kListDump, "before");
  make_marker(kListMarker);

  print_list(list_of({1}), "one");
  print_list(list_of({2}), "two");
  files.remove(kListMarker);
  print_list(list_of({3}), "three");

  EXPECT_EQ(files.read(kListDump), "before\n one \n[1]  \n\n two \n[2]  \n");
}

TEST_F(ControllerListDump, OpensAndClosesItsFile) {
  make_marker(kListMarker);

  print_list(list_of({0, 1}), "cur_ctlr_list");

  EXPECT_EQ(calls().at(0), "stat /var/mctool_ctlrdebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_ctlrdebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(ControllerListDump, CostsOneLookWithoutAMarker) {
  print_list(list_of({0}), "cur_ctlr_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_ctlrdebug"));
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(ControllerListDump, WritesNothingWithoutAListOrATitle) {
  make_marker(kListMarker);

  print_list(nullptr, 3, "cur_ctlr_list");
  print_list(list_of({0}), nullptr);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(ControllerListDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker(kListMarker);
  trace_at(9);
  fail("fopen", 1, EACCES);

  print_list(list_of({0}), "cur_ctlr_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_ctlrdebug", "fopen /var/mctool_ctlrdebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

}  // namespace
}  // namespace tests
