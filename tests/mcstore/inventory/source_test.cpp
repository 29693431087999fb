#include "mcstore/inventory/source.h"

#include <gmock/gmock.h>

#include "host/store_directory.h"
#include "nvme/nvme_bytes.h"
#include "raid/bbus/bbu_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"

namespace tests {
namespace {

using mcstore::KindInventory;
using mcstore::KindStatus;
using testing::ElementsAre;
using testing::HasSubstr;

class SourceTest : public testing::Test {
 protected:
  SourceTest() { files.write(kControllerStore, controller_file(2, {Controller()})); }

  KindInventory read(const std::string &kind) {
    mcstore::Source source({.from = files.real(""), .patience = {.seconds = 0.1}});
    return source.read(mcstore::kind_named(kind));
  }

  StoreDirectory files;
};

TEST_F(SourceTest, IsFineWhenTheFileHoldsWhatItShould) {
  files.write(kDriveStore, drive_file(2, {numbered_drive(0), numbered_drive(1)}), 5000);

  const KindInventory drives = read("drives");

  EXPECT_EQ(drives.status, KindStatus::kFine);
  EXPECT_EQ(drives.error, "");
  ASSERT_EQ(drives.size(), 2u);
  EXPECT_EQ(drives.device(1).name(), "c0/e0/s1");
  ASSERT_TRUE(drives.store);
  EXPECT_EQ(drives.store->path, kDriveStore);
  EXPECT_EQ(drives.store->modified.tv_sec, 5000);
  EXPECT_EQ(drives.store->announced, 2u);
  EXPECT_EQ(drives.store->records, 2u);
  EXPECT_EQ(read("controllers").state, 2u);
}

TEST_F(SourceTest, IsAbsentWithoutAFile) {
  const KindInventory drives = read("drives");
  const KindInventory expanders = read("expanders");

  EXPECT_EQ(drives.status, KindStatus::kAbsent);
  EXPECT_EQ(drives.error, files.real(kDriveStore) + " does not exist");
  EXPECT_FALSE(drives.has_data());
  EXPECT_EQ(expanders.status, KindStatus::kAbsent);
}

TEST_F(SourceTest, IsUnreadableWhenSomethingElseIsInItsPlace) {
  files.write(std::string(kDriveStore) + "/file", Bytes());

  const KindInventory drives = read("drives");

  EXPECT_EQ(drives.status, KindStatus::kUnreadable);
  EXPECT_EQ(drives.error, "cannot read " + files.real(kDriveStore) + ": it is not a file");
}

TEST_F(SourceTest, IsUnreadableWithoutItsLock) {
  files.remove(kControllerStore);
  files.write(kDriveStore, drive_file(0, {}));

  const KindInventory drives = read("drives");

  EXPECT_EQ(drives.status, KindStatus::kUnreadable);
  EXPECT_EQ(drives.error,
            files.real(kControllerStore) + " does not exist, which is to be locked: the collector makes it");
}

TEST_F(SourceTest, IsDamagedWhenTheFileEndsWithinARecordOrItsHeader) {
  files.write(kDriveStore, drive_file(1, {Drive()}) + Bytes::repeated(200, 0));
  const KindInventory drives = read("drives");
  files.write(kDriveStore, Bytes::repeated(2, 0));
  const KindInventory header = read("drives");

  EXPECT_EQ(drives.status, KindStatus::kDamaged);
  EXPECT_EQ(drives.error, files.real(kDriveStore) + " ends within a record: 1 whole ones, and 200 bytes");
  EXPECT_EQ(drives.size(), 1u);
  EXPECT_EQ(header.status, KindStatus::kDamaged);
  EXPECT_EQ(header.error, files.real(kDriveStore) + " ends within its header");
  ASSERT_TRUE(header.store);
  EXPECT_EQ(header.store->size, 2u);
  EXPECT_EQ(header.store->records, 0u);
  EXPECT_EQ(header.store->left_over, 2u);
}

TEST_F(SourceTest, IsDamagedWhenTheFileHoldsAnotherNumberOfRecords) {
  files.write(kDriveStore, drive_file(2, {Drive()}));
  const KindInventory drives = read("drives");
  files.write(kVirtualDriveStore, virtual_drive_file(volumes_below(256)));
  const KindInventory volumes = read("virtual-drives");

  EXPECT_EQ(drives.status, KindStatus::kDamaged);
  EXPECT_EQ(drives.error, files.real(kDriveStore) + " announces 2 records and holds 1");
  EXPECT_EQ(volumes.status, KindStatus::kDamaged);
  EXPECT_EQ(volumes.error, files.real(kVirtualDriveStore) + " holds 256 records, and a reply can count 255");
}

TEST_F(SourceTest, IsSimulatedWhenThePluginMakesDevicesUp) {
  files.write_text("/debug/mctool_storage_debug", "");

  const KindInventory controllers = read("controllers");

  EXPECT_EQ(controllers.status, KindStatus::kSimulated);
  EXPECT_EQ(controllers.error, "the devices are made up: the plug-in simulates them");
  EXPECT_EQ(controllers.size(), 2u);
  EXPECT_EQ(controllers.store, std::nullopt);
}

TEST_F(SourceTest, TakesNvmeValuesFromTheFileWhereXmlIsNotClear) {
  files.write(kNvmeControllerStore, nvme_controller_file(4, {}));
  files.write(kNvmeDriveStore, nvme_drive_file(4, {NvmeDrive{.vendor = "a\"b"}}));

  const KindInventory drives = read("nvme-drives");

  EXPECT_EQ(drives.status, KindStatus::kFine);
  EXPECT_EQ(drives.state, 4u);
  ASSERT_EQ(drives.size(), 1u);
  EXPECT_EQ(drives.device(0).text("vendor"), "a\"b");
  EXPECT_THAT(drives.notes,
              ElementsAre(HasSubstr("the plug-in's reply is not clear (it is not well-formed: Error parsing")));
}

TEST_F(SourceTest, HasNoNoteWhereXmlIsClear) {
  files.write(kNvmeControllerStore, nvme_controller_file(4, {}));
  files.write(kNvmeDriveStore, nvme_drive_file(4, {NvmeDrive()}));

  EXPECT_THAT(read("nvme-drives").notes, ElementsAre());
}

TEST_F(SourceTest, KeepsWhatTheFileHoldsOfACompletedRecord) {
  files.write(kBbuStore, bbu_file({Bbu()}));
  const Bytes image = flash_module_image();
  files.write(kFlashModuleImage, image);

  const KindInventory bbus = read("bbus");

  ASSERT_EQ(bbus.size(), 1u);
  EXPECT_EQ(bbus.device(0).text("tfm_vendor"), "Tarvo");
  const mcstore::Record stored = bbus.device(0).stored();
  EXPECT_EQ(Bytes({stored.begin(), stored.end()}), Bbu().stored());
}

TEST_F(SourceTest, HasTheSameBytesForARecordThatIsNotCompleted) {
  files.write(kBbuStore, bbu_file({Bbu()}));

  const KindInventory bbus = read("bbus");

  EXPECT_TRUE(bbus.stored.empty());
  EXPECT_EQ(bbus.device(0).stored().data(), bbus.device(0).record().data());
}

TEST_F(SourceTest, ReleasesTheLock) {
  read("controllers");

  EXPECT_TRUE(files.is_unlocked(kControllerStore));
}

}  // namespace
}  // namespace tests
