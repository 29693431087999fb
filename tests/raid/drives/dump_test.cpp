#include <gmock/gmock.h>

#include "host/printed.h"
#include "raid/drives/drive_test.h"
#include "raid/drives/full_record.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::Not;

class DriveDump : public DriveTest {
 protected:
  void print(const Bytes &record, FILE *stream) {
    PLUGIN(print_pdinfo)(reinterpret_cast<const StorPhyDriveInfo *>(record.data()), stream);
  }

  // Other bytes follow the record; they are not to be shown.
  std::string text_of(const Bytes &record) {
    const Bytes memory = record + Bytes::repeated(64, '!');
    return printed([&](FILE *stream) { print(memory, stream); });
  }
};

TEST_F(DriveDump, ShowsEveryField) { EXPECT_EQ(text_of(full_drive_record(Bytes::Order::kLittle)), full_drive_text()); }

TEST_F(DriveDump, ShowsTheTemperatureOnlyWhereItIsValid) {
  const Bytes record = full_drive_record(Bytes::Order::kLittle).put(105, Bytes().u8(0));

  const std::string text = text_of(record);

  EXPECT_THAT(text, HasSubstr("Temp valid = false\nrebuild_operation_progress status = 138\n"));
  EXPECT_THAT(text, Not(HasSubstr("Temperature")));
}

TEST_F(DriveDump, OnlyOneIsADirectAttachment) {
  for (const unsigned value : {0u, 2u, 255u})
    EXPECT_THAT(text_of(Bytes::repeated(kDriveSize, 0).put(260, Bytes().u8(value))),
                HasSubstr("Enclosure Association = Expander Attached\n"));
}

TEST_F(DriveDump, AFlagIsTrueWhenItIsAnythingButZero) {
  const std::string labels[] = {"Disabled for removal", "Fault",      "Online",
                                "Temp valid",           "Boot drive", "Transport Ready"};
  const size_t offsets[] = {20, 103, 104, 105, 127, 287};
  for (size_t i = 0; i < 6; ++i) {
    const std::string text = text_of(Bytes::repeated(kDriveSize, 0).put(offsets[i], Bytes().u8(0x80)));

    for (size_t other = 0; other < 6; ++other)
      EXPECT_THAT(text, HasSubstr(labels[other] + (other == i ? " = true\n" : " = false\n")));
  }
}

TEST_F(DriveDump, ATextWithoutANulRunsIntoTheNextOne) {
  const Bytes record =
      Bytes::repeated(kDriveSize, 0).put(67, Bytes().text("VENDORXXX", 9)).put(76, Bytes().text("F1", 5));

  EXPECT_THAT(text_of(record), HasSubstr("vendor = VENDORXXXF1\n"));
}

TEST_F(DriveDump, TheLastTextEndsWithTheRecord) {
  const size_t firmware_v37 = 444;

  EXPECT_THAT(text_of(Bytes::repeated(kDriveSize, 'x')),
              HasSubstr("\nfirmware_v37 = " + std::string(kDriveSize - firmware_v37, 'x') + "\n"));
}

TEST_F(DriveDump, ToAStreamLooksAtNoMarker) {
  forget_calls();
  text_of(full_drive_record(Bytes::Order::kLittle));

  EXPECT_EQ(number_of_calls("stat /var/mctool_stordebug"), 0);
  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

TEST_F(DriveDump, WithoutAStreamGoesToTheStorageDumpIfThatIsSwitchedOn) {
  const Bytes record = full_drive_record(Bytes::Order::kLittle);
  print(record, nullptr);
  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
  files.write_text("/var/mctool_stordebug", "");

  print(record, nullptr);
  print(record, nullptr);

  EXPECT_EQ(files.read("/var/mctool_stordebug.txt"), full_drive_text() + full_drive_text());
}

TEST_F(DriveDump, OfNothingIsNothing) {
  files.write_text("/var/mctool_stordebug", "");
  forget_calls();

  PLUGIN(print_pdinfo)(nullptr, nullptr);
  EXPECT_EQ(printed([&](FILE *stream) { PLUGIN(print_pdinfo)(nullptr, stream); }), "");

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

TEST_F(DriveDump, IsMadeOfEachRecordInTheOrderOfTheFile) {
  files.write_text("/var/mctool_stordebug", "");
  files.write(kDriveStore, little_endian().u32(1) + full_drive_record(Bytes::Order::kLittle));
  full();
  files.write(kDriveStore, little_endian().u32(1) + full_drive_record(Bytes::Order::kLittle), 2000);

  delta();  // a record that is not reported is dumped all the same

  EXPECT_EQ(files.read("/var/mctool_stordebug.txt"), full_drive_text() + full_drive_text());
}

// ------------------------------------------------------------------------------------------------------ the lists

class DriveListDump : public DriveTest {
 protected:
  std::string dump(const std::vector<PhyDriveSummary> &list, int32_t count, const char *title) {
    PLUGIN(print_pd_list)(list.data(), count, title);
    return files.read("/var/mctool_pddebug.txt");
  }
};

TEST_F(DriveListDump, ShowsSerialNumbersBehindTheTitle) {
  files.write_text("/var/mctool_pddebug", "");

  EXPECT_EQ(dump({{1, 2, "ABC", 3}, {1, 3, "", 3}, {1, 4, "D", 3}}, 2, "some title"), "\n some title \n[ABC]  []  \n");
}

TEST_F(DriveListDump, IsATitleWhenTheListIsEmpty) {
  files.write_text("/var/mctool_pddebug", "");

  EXPECT_EQ(dump({{}}, 0, "t"), "\n t \n\n");
}

TEST_F(DriveListDump, EndsASerialNumberWithItsEntry) {
  files.write_text("/var/mctool_pddebug", "");
  std::vector<PhyDriveSummary> list(2);
  memset(list.data(), 'S', sizeof list[0]);  // its padding, too

  EXPECT_EQ(dump(list, 1, "t"), "\n t \n[" + std::string(26, 'S') + "]  \n");
}

TEST_F(DriveListDump, NeedsItsMarkerAListAndATitle) {
  const std::vector<PhyDriveSummary> list(1);
  EXPECT_EQ(dump(list, 1, "t"), "");
  files.write_text("/var/mctool_pddebug", "");

  EXPECT_EQ(dump(list, 1, nullptr), "");
  PLUGIN(print_pd_list)(nullptr, 0, "t");
  EXPECT_FALSE(files.exists("/var/mctool_pddebug.txt"));
}

}  // namespace
}  // namespace tests
