#include "mcstore/inventory/changes.h"

#include <gmock/gmock.h>

#include "mcstore/inventory/looks.h"
#include "raid/drives/drive_bytes.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"

namespace tests {
namespace {

using mcstore::Change;
using mcstore::KindInventory;
using mcstore::KindStatus;
using testing::ElementsAre;
using testing::IsEmpty;

// "went SERIAL-1", "changed SERIAL-1 status 5 -> 6"
std::vector<std::string> told(const std::vector<Change> &changes) {
  std::vector<std::string> lines;
  for (const Change &change : changes) {
    std::string line = word_for(change.type);
    if (change.device) line += ' ' + change.device->text("serial_num");
    for (const auto &field : change.fields)
      line += ' ' + field.name + ' ' + field.before.text + " -> " + field.after.text;
    lines.push_back(line);
  }
  return lines;
}

KindInventory drives(const std::vector<Drive> &all) {
  std::vector<Bytes> records;
  for (const Drive &drive : all) records.push_back(drive.stored());
  return look_at("drives", records);
}

TEST(Changes, TellWhatCameWentAndChanged) {
  const KindInventory before = drives({numbered_drive(0), numbered_drive(1), numbered_drive(2)});
  const KindInventory after = drives({numbered_drive(3), numbered_drive(2, 7), numbered_drive(0)});

  const std::vector<Change> changes = data_changes(before, after);

  EXPECT_THAT(told(changes), ElementsAre("went SERIAL-1", "changed SERIAL-2 mod_timestamp 1 -> 7", "came SERIAL-3"));
  EXPECT_EQ(changes[1].fields[0].before.number, 1u);
  EXPECT_EQ(changes[1].fields[0].after.number, 7u);
}

TEST(Changes, AreNoneWhenDevicesOnlyChangePlaces) {
  const KindInventory before = drives({numbered_drive(0), numbered_drive(1)});
  const KindInventory after = drives({numbered_drive(1), numbered_drive(0)});

  EXPECT_THAT(told(data_changes(before, after)), IsEmpty());
}

TEST(Changes, PairDevicesOfOneIdentityInTheirOrder) {
  const KindInventory before = drives({numbered_drive(0, 1), numbered_drive(0, 2)});
  const KindInventory after = drives({numbered_drive(0, 1), numbered_drive(0, 3), numbered_drive(0, 4)});

  EXPECT_THAT(told(data_changes(before, after)), ElementsAre("changed SERIAL-0 mod_timestamp 2 -> 3", "came SERIAL-0"));
}

TEST(Changes, CompareTheEntriesThatCount) {
  const size_t at = offset_of("virtual-drives", "num_physical_drives");  // which follow it
  const auto with_drives = [&](const std::vector<uint8_t> &entries, uint8_t count) {
    return look_at("virtual-drives", {VirtualDrive().stored().put(at, Bytes().u8(count)).put(at + 1, Bytes(entries))});
  };
  const KindInventory before = with_drives({0, 1, 0, 2, 0, 9}, 2);
  const KindInventory after = with_drives({0, 1, 0, 3, 0, 8}, 2);

  EXPECT_THAT(told(data_changes(before, after)), ElementsAre("changed  pd[1] 0/2 -> 0/3"));
}

TEST(Changes, TellValuesApartThatReadTheSame) {
  const KindInventory before = look_at("virtual-drives", {VirtualDrive{.size = uint64_t{1} << 40}.stored()});
  const KindInventory after = look_at("virtual-drives", {VirtualDrive{.size = (uint64_t{1} << 40) + 1}.stored()});

  EXPECT_THAT(told(data_changes(before, after)),
              ElementsAre("changed  size 1.0 TiB (1099511627776) -> 1.0 TiB (1099511627777)"));
}

TEST(Changes, ReportNothingAsGoneThatCannotBeRead) {
  const KindInventory before = drives({numbered_drive(0)});
  const KindInventory after = look_in_vain("drives", KindStatus::kUnreadable, "no permission");

  EXPECT_THAT(told(data_changes(before, after)), IsEmpty());
  EXPECT_THAT(told(data_changes(after, before)), IsEmpty());
  EXPECT_THAT(told(status_changes(before, before, after)),
              ElementsAre("status status fine -> unreadable error none -> no permission devices 1 -> none"));
}

TEST(Changes, ReportNothingAsGoneThatADamagedFileLacks) {
  const KindInventory whole = drives({numbered_drive(0), numbered_drive(1)});
  KindInventory damaged = drives({numbered_drive(0, 2)});
  damaged.status = KindStatus::kDamaged;

  EXPECT_THAT(told(data_changes(whole, damaged)), ElementsAre("changed SERIAL-0 mod_timestamp 1 -> 2"));
  EXPECT_THAT(told(data_changes(damaged, whole)), ElementsAre("changed SERIAL-0 mod_timestamp 2 -> 1"));
}

TEST(Changes, DoNotCompareDevicesWithMadeUpOnes) {
  KindInventory simulated = drives({numbered_drive(1)});
  simulated.status = KindStatus::kSimulated;

  EXPECT_THAT(told(data_changes(drives({numbered_drive(0)}), simulated)), IsEmpty());
}

TEST(Changes, TellThatTheSubsystemHasAnotherState) {
  KindInventory before = look_at("controllers", {});
  before.state = 2;
  KindInventory after = look_at("controllers", {});
  after.state = 77;

  EXPECT_THAT(told(status_changes(before, before, after)),
              ElementsAre("status state " + state_text(before) + " -> 77"));
}

TEST(Changes, DoNotCompareErrorsWhichNamePlaces) {
  const KindInventory before = look_in_vain("drives", KindStatus::kAbsent, "/a/var does not exist");
  const KindInventory after = look_in_vain("drives", KindStatus::kAbsent, "/b/var does not exist");

  EXPECT_THAT(told(status_changes(before, before, after)), IsEmpty());
}

}  // namespace
}  // namespace tests
