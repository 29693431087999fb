#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "host/printed.h"
#include "raid/virtual_drives/full_record.h"
#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Values;

constexpr char kRecordMarker[] = "/var/mctool_stordebug";
constexpr char kRecordDump[] = "/var/mctool_stordebug.txt";

class VirtualDriveDump : public VirtualDriveTest {
 protected:
  void print(const Bytes &record, FILE *stream) {
    PLUGIN(print_vdinfo)(reinterpret_cast<const StorVirtDriveInfo *>(record.data()), stream);
  }

  // Other bytes follow the record; they are not to be shown.
  std::string text_of(const Bytes &record) {
    const Bytes memory = record + Bytes::repeated(64, '!');
    return printed([&](FILE *stream) { print(memory, stream); });
  }

  std::string text_with(size_t offset, const Bytes &bytes) {
    return text_of(Bytes::repeated(kVirtualDriveSize, 0).put(offset, bytes));
  }
};

TEST_F(VirtualDriveDump, ShowsEveryField) {
  EXPECT_EQ(text_of(full_virtual_drive_record(Bytes::Order::kLittle)), full_virtual_drive_text());
}

TEST_F(VirtualDriveDump, BeginsWithATitleOfSixtyEightBytes) { EXPECT_EQ(strlen(kVirtualDriveTitle), 68u); }

TEST_F(VirtualDriveDump, AFlagIsTrueWhenItIsAnythingButZero) {
  const std::string labels[] = {"Allow background init", "Auto Snapshot", "Auto delete oldest", "Boot drive"};
  const size_t offsets[] = {74, 75, 76, 5253};
  for (size_t i = 0; i < 4; ++i) {
    const std::string text = text_with(offsets[i], Bytes().u8(0x80));

    for (size_t other = 0; other < 4; ++other)
      EXPECT_THAT(text, HasSubstr(labels[other] + (other == i ? ": true\n" : ": false\n")));
  }
}

// ------------------------------------------------------------------------------------------------ counted entries

// The lines of all entries of one of the arrays, each with its own values.
std::string member_lines(const std::string &label, size_t count) {
  std::string lines;
  for (size_t i = 0; i < count; ++i) {
    const std::string entry = label + "[" + std::to_string(i) + "].";
    lines += entry + "controller_index = " + std::to_string(i) + "\n";
    lines += entry + "slot_number = " + std::to_string(255 - i) + "\n";
  }
  return lines;
}

class MembersInADump : public VirtualDriveDump, public testing::WithParamInterface<uint8_t> {};

TEST_P(MembersInADump, AreShownAsFarAsTheyCountAndExist) {
  const uint8_t count = GetParam();
  Bytes record = Bytes::repeated(kVirtualDriveSize, 0).put(77, Bytes().u8(count));
  for (size_t i = 0; i < 8; ++i) record.put(78 + 2 * i, Bytes().u8(i).u8(255 - i));
  for (size_t i = 0; i < 256; ++i) record.put(5258 + 2 * i, Bytes().u8(i).u8(255 - i));

  EXPECT_THAT(text_of(record), HasSubstr("\nNum of physical drives =" + std::to_string(count) + "\n" +
                                         member_lines("PD", std::min<size_t>(count, 8)) + member_lines("PD_v5", count) +
                                         "Num of hot spare drives =0\n"));
}

INSTANTIATE_TEST_SUITE_P(, MembersInADump, Values(0, 1, 8, 9, 20, 255));

class HotSparesInADump : public VirtualDriveDump, public testing::WithParamInterface<uint8_t> {};

TEST_P(HotSparesInADump, AreShownAsFarAsTheyCount) {
  const uint8_t count = GetParam();
  Bytes record = Bytes::repeated(kVirtualDriveSize, 0).put(94, Bytes().u8(count));
  std::string lines = "\nNum of hot spare drives =" + std::to_string(count) + "\n";
  for (size_t i = 0; i < 256; ++i)
    record.put(95 + 20 * i, little_endian().u8(i).u8(255 - i).u8(7).u64(1000 + i).u64(2000 + i).u8(8));
  for (size_t i = 0; i < count; ++i) {
    const std::string entry = "HotSpare[" + std::to_string(i) + "].";
    lines += entry + "controller_index = " + std::to_string(i) + "\n";
    lines += entry + "slot_number = " + std::to_string(255 - i) + "\n";
    lines += entry + "span = 7\n";
    lines += entry + "starting block = " + std::to_string(1000 + i) + "\n";
    lines += entry + "number of blocks = " + std::to_string(2000 + i) + "\n";
    lines += entry + "slot_number = 8\n";
  }

  EXPECT_THAT(text_of(record), HasSubstr(lines + "Remaining space = 0\n"));
}

INSTANTIATE_TEST_SUITE_P(, HotSparesInADump, Values(0, 1, 255));

// ------------------------------------------------------------------------------------------- texts without a NUL

TEST_F(VirtualDriveDump, AGuidWithoutANulRunsIntoTheName) {
  const std::string text = text_with(2, Bytes().text(std::string(33, 'G'), 33).text("name", 16));

  EXPECT_THAT(text, HasSubstr("GUID = " + std::string(33, 'G') + "name\nName = name\n"));
}

TEST_F(VirtualDriveDump, ATextEndsWithTheRecord) {
  const std::string text = text_of(Bytes::repeated(kVirtualDriveSize, 'x'));

  const std::string guid(kVirtualDriveSize - 2, 'x');
  const std::string name(kVirtualDriveSize - 35, 'x');
  EXPECT_THAT(text, HasSubstr("GUID = " + guid + "\nName = " + name + "\n"));
  EXPECT_THAT(text, HasSubstr("\nVD SED state = 0x78\n"));
}

// ---------------------------------------------------------------------------------------------------- where it goes

TEST_F(VirtualDriveDump, ToAStreamLooksAtNoMarker) {
  files.write_text(kRecordMarker, "");
  forget_calls();

  text_of(full_virtual_drive_record(Bytes::Order::kLittle));

  EXPECT_EQ(number_of_calls("stat /var/mctool_stordebug"), 0);
  EXPECT_EQ(number_of_calls("fclose"), 0);
  EXPECT_FALSE(files.exists(kRecordDump));
}

TEST_F(VirtualDriveDump, WithoutAStreamGoesToTheStorageDumpIfThatIsSwitchedOn) {
  const Bytes record = full_virtual_drive_record(Bytes::Order::kLittle);
  files.write_text("/var/mctool_vddebug", "");
  print(record, nullptr);
  EXPECT_FALSE(files.exists(kRecordDump));
  files.write_text(kRecordMarker, "");

  print(record, nullptr);
  print(record, nullptr);

  EXPECT_EQ(files.read(kRecordDump), full_virtual_drive_text() + full_virtual_drive_text());
}

TEST_F(VirtualDriveDump, OfNothingIsNothing) {
  files.write_text(kRecordMarker, "");
  forget_calls();

  PLUGIN(print_vdinfo)(nullptr, nullptr);
  EXPECT_EQ(printed([&](FILE *stream) { PLUGIN(print_vdinfo)(nullptr, stream); }), "");

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kRecordDump));
}

TEST_F(VirtualDriveDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  files.write_text(kRecordMarker, "");
  trace_at(9);
  forget_calls();
  fail("fopen", 1, EACCES);

  print(volume(0).stored(), nullptr);

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug", "fopen /var/mctool_stordebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// ------------------------------------------------------------------------------------------------------ of retrievals

TEST_F(VirtualDriveDump, OfARetrievalNeedsTheMarker) {
  store({volume(0)});
  full();
  EXPECT_FALSE(files.exists(kRecordDump));
  files.write_text(kRecordMarker, "");

  full();

  EXPECT_EQ(files.read(kRecordDump), text_of(volume(0).stored()));
}

TEST_F(VirtualDriveDump, IsMadeOfEachRecordOnceInTheOrderOfTheFile) {
  files.write_text(kRecordMarker, "");
  VirtualDrive skipped = volume(0);
  remember({skipped});
  files.remove(kRecordDump);
  files.write(kVirtualDriveStore, skipped.stored() + full_virtual_drive_record(Bytes::Order::kLittle), 2000);

  delta();  // a record that is not reported is dumped all the same

  EXPECT_EQ(files.read(kRecordDump), text_of(skipped.stored()) + full_virtual_drive_text());
}

}  // namespace
}  // namespace tests
