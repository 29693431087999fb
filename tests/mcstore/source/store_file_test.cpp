#include "mcstore/source/store_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/store_directory.h"
#include "mcstore/source/failure.h"
#include "nvme/nvme_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using mcstore::StoreFile;

class StoreFileTest : public testing::Test {
 protected:
  StoreFile open(const std::string &path, const std::string &kind) {
    return {files.real(path), mcstore::kind_named(kind)};
  }

  StoreDirectory files;
};

TEST_F(StoreFileTest, TellsWhatTheHeaderSays) {
  files.write("/drives", nvme_drive_file(7, 4, {NvmeDrive()}), 1234);

  const StoreFile file = open("/drives", "nvme-drives");

  EXPECT_EQ(file.announced(), 7u);
  EXPECT_EQ(file.state(), 4u);
  EXPECT_EQ(file.records(), 1u);
  EXPECT_EQ(file.left_over(), 0u);
  EXPECT_EQ(file.size(), 5u + kNvmeDriveSize);
  EXPECT_EQ(file.modified().tv_sec, 1234);
}

TEST_F(StoreFileTest, HasOnlyWhatItsKindsHeaderHolds) {
  files.write("/drives", drive_file(1, {Drive()}));

  const StoreFile file = open("/drives", "drives");

  EXPECT_EQ(file.announced(), 1u);
  EXPECT_EQ(file.state(), std::nullopt);
}

TEST_F(StoreFileTest, ReadsRecordByRecord) {
  files.write("/drives", drive_file(2, {numbered_drive(1), numbered_drive(2)}) + Bytes::repeated(3, 0xEE));
  const auto next = [](StoreFile &file) {
    const auto record = file.next();
    return record ? Bytes({record->begin(), record->end()}) : Bytes();
  };

  StoreFile file = open("/drives", "drives");

  EXPECT_EQ(file.left_over(), 3u);
  EXPECT_EQ(next(file), numbered_drive(1).stored());
  EXPECT_EQ(next(file), numbered_drive(2).stored());
  EXPECT_EQ(next(file), Bytes());
}

TEST_F(StoreFileTest, MayBeMissing) { EXPECT_THROW(open("/drives", "drives"), mcstore::Missing); }

TEST_F(StoreFileTest, HasNoRecordsWithoutAWholeHeader) {
  files.write("/drives", Bytes::repeated(3, 0));

  const StoreFile file = open("/drives", "drives");

  EXPECT_FALSE(file.has_header());
  EXPECT_EQ(file.announced(), std::nullopt);
  EXPECT_EQ(file.records(), 0u);
  EXPECT_EQ(file.left_over(), 3u);
}

TEST_F(StoreFileTest, IsUnreadableWhenItIsNoFile) {
  files.write("/directory/file", Bytes());
  ASSERT_EQ(mkfifo(files.real("/pipe").c_str(), 0600), 0);

  EXPECT_THROW(open("/directory", "drives"), mcstore::Unreadable);
  EXPECT_THROW(open("/pipe", "drives"), mcstore::Unreadable);
}

}  // namespace
}  // namespace tests
