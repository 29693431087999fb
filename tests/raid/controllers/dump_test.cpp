#include <gmock/gmock.h>

#include "raid/controllers/dump_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ValuesIn;

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
  constexpr size_t kErrorText = 1223;
  const Bytes record = Bytes::repeated(kControllerSize, 'x').put(104, Bytes().u8(1));

  EXPECT_THAT(text_of(record), HasSubstr("controller-error_v22: " + filling(kControllerSize - kErrorText, 'x') + "\n"));
}

// The record alone, so that a read beyond it is seen.
TEST_F(ControllerDump, ReadsNothingBeyondTheRecord) {
  const Bytes record = Bytes::repeated(kControllerSize, 'x').put(104, Bytes().u8(1));
  const std::vector<uint8_t> exactly(record.data(), record.data() + record.size());
  make_marker(kRecordMarker);

  print(exactly.data(), nullptr);

  EXPECT_THAT(files.read(kRecordDump),
              HasSubstr("controller-error_v22: " + filling(kControllerSize - 1223, 'x') + "\n"));
}

}  // namespace
}  // namespace tests
