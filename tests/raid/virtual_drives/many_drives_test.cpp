// A reply counts its records in eight bits, and compares lists in sixteen.

#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <utility>
#include <vector>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class VeryManyVirtualDrives : public VirtualDriveTest {
 protected:
  // So many drives: zeros that take no room on the disk, but for the few that are given.
  void store_very_many(size_t count, const std::vector<std::pair<size_t, VirtualDrive>> &drives, int64_t modified) {
    files.write(kVirtualDriveStore, Bytes());
    for (const auto &[number, drive] : drives) {
      files.resize(kVirtualDriveStore, number * kVirtualDriveSize);
      append(drive.stored());
    }
    files.resize(kVirtualDriveStore, count * kVirtualDriveSize, modified);
  }

 private:
  void append(const Bytes &more) {
    std::ofstream file(files.real(kVirtualDriveStore), std::ios::binary | std::ios::app);
    file.write(reinterpret_cast<const char *>(more.data()), static_cast<std::streamsize>(more.size()));
  }
};

// What zeros are in a reply.
Bytes nameless() { return Bytes::repeated(kVirtualDriveSize, 0); }

TEST_F(VeryManyVirtualDrives, TheCountOfTwoHundredAndFiftySixDrivesWraps) {
  const VirtualDrive last = volume(255, kOrdinary);
  store_very_many(256, {{255, last}}, 1000);

  const Reply reply = full({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), virtual_drive_header(0, kUntouchedAfterGrowth));
  EXPECT_THAT(reply.requests, ElementsAre(length_of(256)));
  EXPECT_EQ(slot(reply, 0), nameless());
  EXPECT_EQ(slot(reply, 255), last.reported());
}

TEST_F(VeryManyVirtualDrives, ThreeHundredDrivesBeginAgainInTheFirstSlot) {
  store_very_many(300, {{255, volume(255)}, {256, volume(256)}, {299, volume(299)}}, 1000);

  const Reply reply = full({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.length, length_of(44));
  EXPECT_EQ(reply.buffer.slice(0, 17), virtual_drive_header(44, kUntouchedAfterGrowth));
  EXPECT_EQ(slot(reply, 0), volume(256).reported());
  EXPECT_EQ(slot(reply, 43), volume(299).reported());
  EXPECT_EQ(slot(reply, 44), nameless());
  EXPECT_EQ(slot(reply, 255), volume(255).reported());
  EXPECT_EQ(slot(reply, 256), untouched_virtual_drive_slot(kUntouchedAfterGrowth));
}

TEST_F(VeryManyVirtualDrives, ADeltaWhoseCountWrapsToNothingHasNoLength) {
  store_very_many(256, {{0, volume(0)}}, 1000);

  const Reply reply = delta({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(slot(reply, 0), volume(0).reported());
}

TEST_F(VeryManyVirtualDrives, ThreeHundredDrivesAreAllRemembered) {
  store_very_many(300, {{299, volume(299)}}, 1000);
  full({.growth = {Growth::kMove}});
  store_very_many(300, {{299, volume(299)}}, 2000);

  EXPECT_EQ(delta({.growth = {Growth::kMove}}).length, 0u);
}

TEST_F(VeryManyVirtualDrives, ThreeHundredGoneDrivesWrapToo) {
  store_very_many(300, {{0, volume(0)}, {1, volume(1)}, {256, volume(256)}}, 1000);
  full({.growth = {Growth::kMove}});
  store({}, 2000);

  const Reply reply = delta({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.length, length_of(44));
  EXPECT_THAT(reply.requests, ElementsAre(length_of(300)));
  EXPECT_THAT(system_log(), SizeIs(300));
  const Bytes untouched = untouched_virtual_drive_slot(kUntouchedAfterGrowth);
  EXPECT_EQ(slot(reply, 0), gone_virtual_drive(volume(256), untouched));
  EXPECT_EQ(slot(reply, 1), gone_virtual_drive({.guid = "", .name = ""}, untouched));
  EXPECT_EQ(slot(reply, 256), untouched);
}

TEST_F(VeryManyVirtualDrives, GoneDrivesBehindAWrappedCountFollowInTheFirstSlots) {
  store_very_many(2, {{0, volume(1000)}, {1, volume(1001)}}, 1000);
  full();
  store_very_many(255, {{0, volume(0)}}, 2000);

  const Reply reply = delta({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.length, length_of(1));
  EXPECT_EQ(slot(reply, 255), gone_virtual_drive(volume(1000), untouched_virtual_drive_slot(kUntouchedAfterGrowth)));
  EXPECT_EQ(slot(reply, 0), gone_virtual_drive(volume(1001), volume(0).reported()));
}

// The comparison takes counts of 16 bits: to it, these are none. Nothing of the file's size is granted.
TEST_F(VeryManyVirtualDrives, SixtyFiveThousandFiveHundredAndThirtySixDrivesCompareLikeNone) {
  store_very_many(1, {}, 1000);
  full();
  store_very_many(65536, {}, 2000);

  const Reply reply = delta({.growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, -13);
  EXPECT_THAT(reply.requests, ElementsAre(length_of(65536 + 1)));
}

// Of this many, each is looked up among as many others.
TEST_F(VeryManyVirtualDrives, TakeNoQuadraticWalkToFindThoseThatAreGone) {
  constexpr uint16_t kMost = 65535;
  std::vector<VdSummary> cached(kMost);
  std::vector<VdSummary> cur(kMost);
  for (size_t i = 0; i < kMost; ++i) {
    snprintf(cached[i].guid, sizeof cached[i].guid, "600605B00D1E2FA32C1B0A9988A%05zu", i);
    snprintf(cur[i].guid, sizeof cur[i].guid, "600605B00D1E2FA32C1B0A9988B%05zu", i);
  }
  const auto start = std::chrono::steady_clock::now();

  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, kMost, cur.data(), kMost, cached.data(), 0), kMost);

  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));  // walking takes far longer
}

}  // namespace
}  // namespace tests
