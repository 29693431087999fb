#include <gmock/gmock.h>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NvmeDriveEvents : public NvmeDriveTest {};

constexpr char kEpochLine[] =
    "mcserver_nvme.cpp:460:NVME subsystem state changed, prevState(-1), newState(4), prevModTime(-1, Wed Dec 31 "
    "23:59:59 "
    "1969\n), curModTime(1000, Thu Jan  1 00:16:40 1970\n)\n";

TEST_F(NvmeDriveEvents, TheFirstEventReportsEveryDrive) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));

  const Reply reply = event();

  EXPECT_EQ(text_of(reply), drive_summary(2) + NvmeDrive{.slot = "A"}.xml() + NvmeDrive{.slot = "B"}.xml());
  EXPECT_THAT(system_log(), ElementsAre(kEpochLine, "mcserver_nvme.cpp:539:NVME subsystem state changed",
                                        "mcserver_nvme.cpp:539:NVME subsystem state changed"));
}

TEST_F(NvmeDriveEvents, AnUnchangedFileAnswersNothing) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kMainPower, {}));

  const Reply reply = event();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
}

TEST_F(NvmeDriveEvents, ARewrittenFileWithoutNewsAnswersNothing) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kMainPower, {NvmeDrive()}), 2000);

  const Reply reply = event();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
}

TEST_F(NvmeDriveEvents, AnEventReportsNewModifiedAndDeletedDrives) {
  const NvmeDrive stays{.slot = "A"};
  const NvmeDrive modified{.slot = "B"};
  const NvmeDrive goes{
      .slot = "C", .serial = "GONE", .vendor_id = 1, .device_id = 2, .subvendor_id = 3, .subdevice_id = 4};
  store(nvme_drive_file(kMainPower, {stays, modified, goes}));
  full();
  NvmeDrive later = modified;
  later.stamp = 2;
  later.temperature = 60;
  store(nvme_drive_file(kMainPower, {stays, later, NvmeDrive{.slot = "D"}}), 2000);

  const Reply reply = event();

  NvmeDrive deleted{
      .slot = "C", .controller_name = "", .product_name = "", .serial = "GONE", .firmware = "", .vendor = ""};
  deleted.vendor_id = 1;
  deleted.device_id = 2;
  deleted.subvendor_id = 3;
  deleted.subdevice_id = 4;
  deleted.temperature = deleted.life_used = deleted.performance = deleted.power_on_hours = 0;
  deleted.throttle = deleted.shutdown = 0;
  deleted.life_left = 0;
  deleted.description = "";
  EXPECT_EQ(text_of(reply), drive_summary(3) + later.xml() + NvmeDrive{.slot = "D"}.xml() + deleted.xml("Deleted"));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(NvmeDriveEvents, ADeletedDriveIsReportedOnce) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kMainPower, {}), 2000);
  EXPECT_NE(event().length, 0u);
  store(nvme_drive_file(kMainPower, {}), 3000);

  EXPECT_EQ(event().length, 0u);
}

TEST_F(NvmeDriveEvents, ADeletedDriveShowsWhatASkippedRecordLeftInItsSlot) {
  const NvmeDrive stays{.slot = "A", .product_name = "STAYS"};
  store(nvme_drive_file(kMainPower, {stays, NvmeDrive{.slot = "B"}}));
  full();
  store(nvme_drive_file(kMainPower, {stays}), 2000);

  NvmeDrive deleted = stays;
  deleted.slot = "B";
  EXPECT_EQ(text_of(event()), drive_summary(1) + deleted.xml("Deleted"));
}

TEST_F(NvmeDriveEvents, ADriveInAnotherSlotOrWithAnotherSerialIsNew) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A", .serial = "S"}}));
  full();
  store(nvme_drive_file(2, kMainPower, {NvmeDrive{.slot = "A", .serial = "S2"}, NvmeDrive{.slot = "B", .serial = "S"}}),
        2000);

  EXPECT_EQ(text_of(event()).substr(0, 50), drive_summary(3).substr(0, 50));
}

TEST_F(NvmeDriveEvents, AnUnchangedStateOtherThanMainPowerAnswersNothingButMovesTheTime) {
  store(nvme_drive_file(kAuxPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kAuxPower, {}), 2000);
  EXPECT_EQ(event().length, 0u);
  store(nvme_drive_file(kMainPower, {}), 2000);

  EXPECT_EQ(event().length, 0u);  // the time is the same
  store(nvme_drive_file(kMainPower, {}), 3000);
  EXPECT_EQ(text_of(event()).substr(0, 45), drive_summary(1).substr(0, 45));  // the cached drive was kept
}

TEST_F(NvmeDriveEvents, AChangedStateComparesRecordsAndLogsOnlyTheReported) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));
  full();
  store(nvme_drive_file(kAuxPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B", .stamp = 2}}), 2000);

  EXPECT_EQ(text_of(event()), drive_summary(1, "Aux_Power") + NvmeDrive{.slot = "B"}.xml());
  EXPECT_THAT(
      system_log(),
      ElementsAre("mcserver_nvme.cpp:460:NVME subsystem state changed, prevState(4), newState(3), "
                  "prevModTime(1000, Thu Jan  1 00:16:40 1970\n), curModTime(2000, Thu Jan  1 00:33:20 1970\n)\n",
                  "mcserver_nvme.cpp:539:NVME subsystem state changed"));
}

TEST_F(NvmeDriveEvents, IdentitiesThatFillTheirFieldsAreComparedWithinThem) {
  const NvmeDrive drive{
      .slot = std::string(16, 'S'), .controller_name = "ONE", .serial = std::string(31, 'N'), .firmware = "X"};
  store(nvme_drive_file(kMainPower, {drive}));
  full();
  NvmeDrive same = drive;
  same.controller_name = "TWO";
  same.firmware = "Y";
  store(nvme_drive_file(kMainPower, {same}), 2000);

  EXPECT_EQ(event().length, 0u);
}

TEST_F(NvmeDriveEvents, TheFileIsUnlockedBeforeTheTextIsMade) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  forget_calls();

  full();

  const std::string text = std::to_string((drive_summary(1) + NvmeDrive().xml()).size());
  EXPECT_THAT(calls(),
              ElementsAre("fopen /var/nvmectlr_info", "fileno", "flock 1", "stat /var/nvmectlr_info",
                          "stat /var/nvmephydrive_info", "fopen /var/nvmephydrive_info", "fread", "calloc", "fread",
                          "fread", "memset_s 84", "flock 8", "fclose", "fclose", "calloc", "memcpy_s " + text));
}

TEST_F(NvmeDriveEvents, TheFirstEntryThatMatchesDecides) {
  const Bytes record = NvmeDrive{.slot = "A", .serial = "S", .stamp = 5}.stored();
  NvmeDriveSummary entries[2] = {};
  for (NvmeDriveSummary &entry : entries) {
    strcpy(entry.smbios_pcislotname, "A");
    strcpy(entry.serial_number, "S");
  }
  entries[0].mod_timestamp = 4;
  entries[1].mod_timestamp = 5;
  const auto *drive = reinterpret_cast<const NvmePhyDriveInfo *>(record.data());
  const auto test = PLUGIN(new_nvme_drive_or_modified);

  EXPECT_EQ(test(drive, entries, 2), 1);
  EXPECT_EQ(test(drive, entries + 1, 1), 0);
  EXPECT_EQ(test(drive, entries, 0), 1);
  EXPECT_EQ(test(nullptr, entries, 2), 0);
  EXPECT_EQ(test(drive, nullptr, 2), 0);
}

TEST_F(NvmeDriveEvents, DeletedDrivesNeedAllThreeLists) {
  const Bytes image = nvme_drive_image(4, {});
  std::vector<uint8_t> bytes(image.data(), image.data() + image.size());
  const NvmeDriveSummary entry = {};
  const auto add = PLUGIN(add_deleted_nvme_drives);

  add(nullptr, 0, &entry, 1, &entry);
  add(bytes.data(), 0, nullptr, 1, &entry);
  add(bytes.data(), 0, &entry, 1, nullptr);

  EXPECT_EQ(Bytes(bytes), image);
}

TEST_F(NvmeDriveEvents, TheDeletionPassComesBeforeTheUnlock) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kMainPower, {}), 2000);
  bool was_unlocked = true;
  before_call("strncpy_s", 1, [&] { was_unlocked = files.is_unlocked(kNvmeControllerStore); });

  event();

  EXPECT_FALSE(was_unlocked);
}

TEST_F(NvmeDriveEvents, AFullCallReportsNothingAsDeleted) {
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}, NvmeDrive{.slot = "B"}}));
  full();
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}}), 2000);

  EXPECT_EQ(text_of(full()), drive_summary(1) + NvmeDrive{.slot = "A"}.xml());
}

TEST_F(NvmeDriveEvents, AStateChangeWithoutNewsAnswersNothing) {
  store(nvme_drive_file(kMainPower, {NvmeDrive()}));
  full();
  store(nvme_drive_file(kAuxPower, {NvmeDrive()}), 2000);

  const Reply reply = event();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(system_log(), ElementsAre(testing::HasSubstr("prevState(4), newState(3)")));
}

TEST_F(NvmeDriveEvents, APartialRecordIsNoErrorAndShowsUnderADeletedDrive) {
  trace_at(3);
  store(nvme_drive_file(kMainPower, {NvmeDrive{.slot = "A"}}));
  full();
  const NvmeDrive partial{.slot = "PARTIAL", .product_name = "LEFT-OVER"};
  store(nvme_drive_file(1, kMainPower, {}) + partial.stored().slice(0, kNvmeDriveSize - 4), 2000);

  NvmeDrive deleted = partial;
  deleted.slot = "A";
  EXPECT_EQ(text_of(event()), drive_summary(1) + deleted.xml("Deleted"));
  EXPECT_EQ(trace(), "");
}

TEST_F(NvmeDriveEvents, TheCountOfAnImageWrapsAt65536) {
  constexpr size_t header_size = kNvmeDriveImageHeaderSize;
  std::vector<uint8_t> image(header_size + 65536 * size_t{kNvmeDriveSize});
  image[4] = image[5] = 0xFF;
  NvmeDriveSummary gone[2] = {};
  gone[0].smbios_pcislotname[0] = 'A';
  gone[1].smbios_pcislotname[0] = 'B';

  PLUGIN(add_deleted_nvme_drives)(image.data(), 0, gone, 2, gone);

  EXPECT_EQ(image[4], 1);
  EXPECT_EQ(image[5], 0);
  EXPECT_EQ(image[header_size + 65535 * size_t{kNvmeDriveSize}], 'A');
  EXPECT_EQ(image[header_size], 'B');
}

}  // namespace
}  // namespace tests
