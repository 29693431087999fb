#include <gmock/gmock.h>

#include <cerrno>
#include <sstream>

#include "host/printed.h"
#include "raid/bbus/bbu_test.h"
#include "raid/bbus/full_record.h"

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
constexpr char kFlashModuleText[] =
    "TFM Vendor    = Collected vendor\n"
    "TFM Model     = Collected model\n"
    "TFM Serial Num= Collected no.\n"
    "TFM Revision  = Collected rev.\n";

Bytes battery() { return full_battery_record(Bytes::Order::kLittle); }
Bytes capacitor() { return full_capacitor_record(Bytes::Order::kLittle); }
Bytes empty_record() { return Bytes::repeated(kBbuSize, 0); }

class BbuDump : public BbuTest {
 protected:
  void print(const void *record, FILE *stream) {
    PLUGIN(print_bbuInfo)(static_cast<const StorBbuInfo *>(record), stream);
  }
  void print_flash_module(const void *record) { PLUGIN(print_bbuTFMInfo)(static_cast<const StorBbuInfo *>(record)); }

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

  void make_marker() {
    files.write_text(kRecordMarker, "");
    forget_calls();
  }
};

// ------------------------------------------------------------------------------------------------------ the text

TEST_F(BbuDump, ShowsEveryFieldOfABattery) { EXPECT_EQ(text_of(battery()), full_battery_text()); }

TEST_F(BbuDump, ShowsEveryFieldOfACapacitor) { EXPECT_EQ(text_of(capacitor()), full_capacitor_text()); }

TEST_F(BbuDump, BeginsWithAHeaderOf74Bytes) {
  EXPECT_EQ(bbu_dump_header().size(), 74u);
  EXPECT_EQ(text_of(empty_record()).substr(0, 74), bbu_dump_header());
}

TEST_F(BbuDump, ShowsTheLinesOfOneVariantOnly) {
  for (const uint8_t flag : std::vector<uint8_t>{1, 0x80, 0xFF}) {
    const std::string text = text_of(empty_record().put(72, Bytes().u8(flag)));
    EXPECT_THAT(text, HasSubstr("Capacitor: true\nCapacitance          = 0\n"));
    EXPECT_THAT(text, Not(HasSubstr("Retention")));
  }
  const std::string text = text_of(empty_record());
  EXPECT_THAT(text, HasSubstr("Capacitor: false\nRetention time           = 0\n"));
  EXPECT_THAT(text, Not(HasSubstr("Pack Energy")));
}

struct Flag {
  size_t offset;
  const char *line;
};
void PrintTo(const Flag &flag, std::ostream *out) { *out << flag.offset; }

constexpr Flag kFlags[] = {
    {53, "Voltage is low         = "},
    {54, "Temp is high           = "},
    {55, "Learn cycle transparent= "},
    {67, "Learn cycle requested                 = "},
};

class BbuFlagDump : public BbuDump, public testing::WithParamInterface<Flag> {};

TEST_P(BbuFlagDump, IsTrueWhenItIsAnythingButZero) {
  for (const uint8_t value : std::vector<uint8_t>{1, 2, 0x80, 0xFF})
    EXPECT_THAT(lines_with("true", empty_record().put(GetParam().offset, Bytes().u8(value))),
                ElementsAre(GetParam().line + std::string("true")));
}

TEST_P(BbuFlagDump, IsFalseWhenItIsZero) {
  EXPECT_THAT(lines_with("false", capacitor().put(GetParam().offset, Bytes().u8(0))),
              ElementsAre(GetParam().line + std::string("false")));
}

INSTANTIATE_TEST_SUITE_P(, BbuFlagDump, ValuesIn(kFlags));

TEST_F(BbuDump, ShowsSignedAndUnsignedNumbers) {
  const Bytes record = empty_record()
                           .put(0, Bytes::hex("FF FF FF FF"))
                           .put(43, Bytes::hex("FF FF FF"))
                           .put(58, Bytes::hex("80"))
                           .put(59, Bytes::hex("FF FF FF 7F FF FF FF FF"))
                           .put(68, Bytes::hex("00 00 00 80"));

  EXPECT_THAT(lines_with("Controller Index", record), ElementsAre("Controller Index       = 255"));
  EXPECT_THAT(lines_with("Serial number", record), ElementsAre("Serial number          = 65535"));
  EXPECT_THAT(lines_with("Percent", record), ElementsAre("Learn Cycle Progress Percent complete = -128"));
  EXPECT_THAT(lines_with("timestamp", record), ElementsAre("Learn Cycle Progress Start timestamp  = 2147483647",
                                                           "Learn Cycle Progress End timestamp    = -1"));
  EXPECT_THAT(lines_with("Next learn", record), ElementsAre("Next learn cycle                      = -2147483648"));
}

TEST_F(BbuDump, RunsOnFromATextThatFillsItsField) {
  const Bytes record = battery().put(4, Bytes().text("EIGHTSIX", 8));

  EXPECT_THAT(lines_with("Device Name", record), ElementsAre("Device Name            = EIGHTSIXHalvorsen"));
}

TEST_F(BbuDump, RunsOnToTheEndOfTheRecordAndNoFurther) {
  const std::string text = text_of(Bytes::repeated(kBbuSize, 'x'));

  EXPECT_THAT(text, HasSubstr("Device Name            = " + std::string(kBbuSize - 4, 'x') + "\n"));
  EXPECT_THAT(text, HasSubstr("Module version         = " + std::string(kBbuSize - 35, 'x') + "\n"));
}

// The record alone, so that a read beyond it is seen.
TEST_F(BbuDump, ReadsNothingBeyondTheRecord) {
  const std::vector<uint8_t> exactly(kBbuSize, 'x');
  make_marker();

  print(exactly.data(), nullptr);
  print_flash_module(exactly.data());

  EXPECT_THAT(files.read(kRecordDump), HasSubstr("Device Name            = " + std::string(kBbuSize - 4, 'x') + "\n"));
  EXPECT_THAT(files.read(kRecordDump), HasSubstr("TFM Revision  = " + std::string(kBbuSize - 145, 'x') + "\n"));
}

// ------------------------------------------------------------------------------------------------------ where it goes

TEST_F(BbuDump, LeavesTheStreamOpenAndLooksForNoMarker) {
  make_marker();
  FILE *const stream = tmpfile();

  print(battery().data(), stream);

  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_THAT(calls(), Not(Contains("fclose")));
  EXPECT_THAT(calls(), Not(Contains(HasSubstr("stat"))));
  EXPECT_EQ(ftell(stream), static_cast<long>(full_battery_text().size()));
  EXPECT_NE(fputs("more\n", stream), EOF);
  fclose(stream);
}

TEST_F(BbuDump, CostsOneLookWithoutAMarker) {
  print(battery().data(), nullptr);
  print_flash_module(battery().data());

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug", "stat /var/mctool_stordebug"));
  EXPECT_FALSE(files.exists(kRecordDump));
}

TEST_F(BbuDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kRecordDump, "before\n");
  make_marker();

  print(battery().data(), nullptr);
  print(capacitor().data(), nullptr);
  files.remove(kRecordMarker);
  print(battery().data(), nullptr);

  EXPECT_EQ(files.read(kRecordDump), "before\n" + full_battery_text() + full_capacitor_text());
}

TEST_F(BbuDump, OpensAndClosesItsFile) {
  make_marker();

  print(battery().data(), nullptr);

  EXPECT_EQ(calls().at(0), "stat /var/mctool_stordebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_stordebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(BbuDump, WritesNothingOfANullRecord) {
  make_marker();
  FILE *const stream = tmpfile();

  print(nullptr, nullptr);
  print(nullptr, stream);
  print_flash_module(nullptr);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_EQ(ftell(stream), 0);
  fclose(stream);
}

TEST_F(BbuDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker();
  trace_at(9);
  fail("fopen", 1, EACCES);
  fail("fopen", 2, EACCES);

  print(battery().data(), nullptr);
  print_flash_module(battery().data());

  EXPECT_EQ(number_of_calls("fopen /var/mctool_stordebug.txt"), 2);
  EXPECT_THAT(calls(), Not(Contains("fprintf")));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// ------------------------------------------------------------------------------------------------------ flash module

TEST_F(BbuDump, OfTheFlashModuleIsItsFourTexts) {
  files.write_text(kRecordDump, "before\n");
  make_marker();

  print_flash_module(battery().data());

  EXPECT_EQ(files.read(kRecordDump), std::string("before\n") + kFlashModuleText);
  EXPECT_EQ(number_of_calls("fclose"), 1);
}

TEST_F(BbuDump, OfTheFlashModuleRunsOnFromATextThatFillsItsField) {
  const Bytes record =
      empty_record().put(89, Bytes().text("12345678901234567890", 20).text("M", 20).text("S", 16).text("R", 16)) +
      Bytes::repeated(64, '!');
  make_marker();

  print_flash_module(record.data());

  EXPECT_EQ(files.read(kRecordDump),
            "TFM Vendor    = 12345678901234567890M\nTFM Model     = M\nTFM Serial Num= S\nTFM Revision  = R\n");
}

// ------------------------------------------------------------------------------------------------------ of retrievals

// Numbers as they are in the file, then the texts as they are in the reply.
TEST_F(BbuDump, ShowsARecordAsItIsInTheFileAndThenTheFlashModule) {
  make_marker();
  files.write(kBbuStore, battery() + capacitor());

  full();

  EXPECT_EQ(files.read(kRecordDump), full_battery_text() + kFlashModuleText + full_capacitor_text() + kFlashModuleText);
}

TEST_F(BbuDump, ShowsTheFlashModulesOwnTextsOnceTheyAreRead) {
  make_marker();
  files.write(kFlashModuleImage, flash_module_image());
  files.write(kBbuStore, battery());

  full();

  EXPECT_EQ(files.read(kRecordDump), full_battery_text() +
                                         "TFM Vendor    = Tarvo\n"
                                         "TFM Model     = TFM-16G\n"
                                         "TFM Serial Num= SN0042\n"
                                         "TFM Revision  = P[AB]F[1]V[CDE]\n");
}

TEST_F(BbuDump, ShowsARecordThatADeltaDoesNotReportWithoutTheFlashModule) {
  files.write(kBbuStore, battery());
  full();
  files.write(kBbuStore, battery(), 2000);
  make_marker();

  delta();

  EXPECT_EQ(files.read(kRecordDump), full_battery_text());
}

}  // namespace
}  // namespace tests
