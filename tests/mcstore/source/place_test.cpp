#include "mcstore/source/place.h"

#include <gtest/gtest.h>

#include "host/store_directory.h"

namespace tests {
namespace {

using mcstore::Place;

TEST(Place, IsThisMachineWhenNoneIsGiven) {
  const Place here("");

  EXPECT_EQ(here.directory(), "/");
  EXPECT_EQ(here.real("/var/storctlr_info"), "/var/storctlr_info");
  EXPECT_EQ(here.real("/etc/product"), "/etc/product");
}

TEST(Place, IsARoot) {
  const StoreDirectory files;
  const Place root(files.real(""));

  EXPECT_EQ(root.directory(), files.real(""));
  EXPECT_EQ(root.real("/var/storctlr_info"), files.real("/var/storctlr_info"));
  EXPECT_EQ(root.real("/variable"), files.real("/variable"));
}

TEST(Place, IsADirectoryWithStoreFilesInIt) {
  StoreDirectory files;
  files.write_text("/storphydrive_info", "");
  const Place directory(files.real(""));

  EXPECT_EQ(directory.real("/var/storctlr_info"), files.real("/storctlr_info"));
  EXPECT_EQ(directory.real("/var/log/TFM_FRU.bin"), files.real("/log/TFM_FRU.bin"));
  EXPECT_EQ(directory.real("/etc/product"), files.real("/etc/product"));
}

TEST(Place, LeavesRelativePathsAlone) {
  Place place("/nowhere");

  EXPECT_EQ(place.resolve("fopen", "file"), "file");
  EXPECT_EQ(place.resolve("fopen", "/var/file"), "/nowhere/var/file");
}

TEST(Place, LogsPrintably) {
  Place place("/nowhere");
  testing::internal::CaptureStderr();

  place.log(0, "a\x1b[2Jb\nforged\n");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "syslog: a\\x1b[2Jb\\x0aforged\n");
}

}  // namespace
}  // namespace tests
