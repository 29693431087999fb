#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <random>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

using testing::Combine;
using testing::ElementsAre;
using testing::Values;

class HostileDriveFiles : public DriveTest {
 protected:
  void append(const Bytes &more) {
    std::ofstream file(files.real(kDriveStore), std::ios::binary | std::ios::app);
    file.write(reinterpret_cast<const char *>(more.data()), static_cast<std::streamsize>(more.size()));
  }

  // So many drives that are all zero, and one behind them.
  void store_very_many(uint32_t announced, size_t count, const Drive &last, int64_t modified = 1000) {
    files.write(kDriveStore, little_endian().u32(announced));
    files.resize(kDriveStore, 4 + count * kDriveSize);
    append(last.stored());
    files.resize(kDriveStore, 4 + (count + 1) * kDriveSize, modified);
  }
};

TEST_F(HostileDriveFiles, AFileThatGrowsIsReadToTheSizeItHad) {
  store({numbered_drive(0)});
  before_call("fread", 2, [this] {
    for (size_t number = 1; number < 300; ++number) append(numbered_drive(number).stored());
  });

  const Reply reply = full({.size = drive_room(1, 1), .growth = {Growth::kRefuse}});

  const uint32_t behind = drive_room(1, 1) - drive_reply_size(1);
  EXPECT_EQ(reply.bytes(), drive_reply(1, {numbered_drive(0)}));
  EXPECT_EQ(reply.buffer.slice(drive_reply_size(1), behind), Bytes::repeated(behind, kUntouched));
}

TEST_F(HostileDriveFiles, AFileThatShrinksEndsWhereItEnds) {
  trace_at(3);
  store(drives_below(3));
  before_call("fread", 1, [this] { files.resize(kDriveStore, drive_file_size(1) + 10); });

  EXPECT_EQ(full().bytes(), drive_header(3, 1) + numbered_drive(0).reported());
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------ any number, announced and there

// The number that is announced, and the number that is there.
class AnnouncedDrives : public HostileDriveFiles, public testing::WithParamInterface<std::tuple<uint32_t, size_t>> {
 protected:
  AnnouncedDrives() {
    trace_at(9);
    files.write_text("/var/mctool_pddebug", "");
    // With none, the file is a header.
    if (count == 0)
      store(announced, {});
    else
      store_very_many(announced, count - 1, last);
  }

  // A buffer that the records fit, and little more.
  uint32_t size() const { return drive_file_size(count) + 16; }

  const uint32_t announced = std::get<0>(GetParam());
  const size_t count = std::get<1>(GetParam());
  const Drive last = {.controller = 9, .slot = 9, .serial = "LAST", .stamp = 3};
};

TEST_P(AnnouncedDrives, ComeAsTheyAre) {
  const Reply reply = full({.size = size(), .growth = {Growth::kMove}});

  ASSERT_EQ(reply.status, 0);
  const auto counted = static_cast<uint16_t>(count);
  EXPECT_EQ(reply.length, drive_reply_size(counted));
  EXPECT_EQ(reply.buffer.slice(0, 12), drive_header(announced, counted).slice(0, 12));
  if (count > 0) {
    EXPECT_EQ(slot(reply, (count - 1) % 65536), last.reported());
  }
  EXPECT_EQ(trace(), "");
  EXPECT_TRUE(files.exists("/var/mctool_pddebug.txt"));
}

INSTANTIATE_TEST_SUITE_P(, AnnouncedDrives, Combine(Values(0u, 1u, 5u, 256u, 65535u), Values(0, 1, 300, 70000)));
// So many count as one less than none, which is no more than the buffer has where there is a drive at all.
INSTANTIATE_TEST_SUITE_P(MinusOne, AnnouncedDrives, Combine(Values(0xFFFFFFFFu), Values(1, 300, 70000)));

class TooManyAnnouncedDrives : public AnnouncedDrives {};

TEST_P(TooManyAnnouncedDrives, DoNotComeAtAll) {
  const Reply reply = full({.size = size(), .growth = {Growth::kRefuse}});

  const uint32_t needed = drive_room(count, announced);
  EXPECT_EQ(reply.status, -13);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, ElementsAre(needed));
  EXPECT_EQ(trace(), drives_too_large(needed, size()));
  EXPECT_EQ(reply.buffer, Bytes::repeated(size(), kUntouched));
  EXPECT_FALSE(files.exists("/var/mctool_pddebug.txt"));
}

INSTANTIATE_TEST_SUITE_P(, TooManyAnnouncedDrives, Combine(Values(0x00800000u), Values(0, 1, 300)));
INSTANTIATE_TEST_SUITE_P(MinusOne, TooManyAnnouncedDrives, Values(std::tuple(0xFFFFFFFFu, 0)));

// ------------------------------------------------------------------------------------------------------------- cost

TEST_F(HostileDriveFiles, ADeltaOverVeryManyDrivesTakesNoQuadraticWalk) {
  constexpr size_t kMany = 65535;
  store(drives_below(kMany));
  const auto start = std::chrono::steady_clock::now();
  full({.growth = {Growth::kMove}});
  const auto once = std::chrono::steady_clock::now() - start;

  // Every drive has moved: all are new, all are gone.
  std::vector<Drive> moved = drives_below(kMany);
  for (Drive &drive : moved) drive.serial += 'X';
  store(moved, 2000);
  const auto delta_start = std::chrono::steady_clock::now();
  const Reply reply = delta({.growth = {Growth::kMove}});
  const auto changed = std::chrono::steady_clock::now() - delta_start;

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.buffer.slice(0, 12), drive_header(65535, static_cast<uint16_t>(2 * kMany)).slice(0, 12));
  EXPECT_EQ(slot(reply, 65535), gone_drive(numbered_drive(0), Bytes::repeated(kDriveSize, kUntouchedAfterGrowth)));
  EXPECT_EQ(slot(reply, 65533).slice(81, 21), Bytes().text("SERIAL-65534", 21));  // the slots have wrapped
  EXPECT_LT(changed, 50 * once + std::chrono::seconds(1));  // walking would take thousands of times as long
}

// ------------------------------------------------------------------------------------------------------------- garbage

class GarbageInDriveFiles : public HostileDriveFiles, public testing::WithParamInterface<unsigned> {};

TEST_P(GarbageInDriveFiles, IsReportedAsItIs) {
  std::mt19937 random(GetParam());
  files.write_text("/var/mctool_pddebug", "");
  files.write_text("/var/mctool_stordebug", "");
  trace_at(9);
  for (int round = 1; round <= 30; ++round) {
    const size_t size = random() % 3000;
    Bytes file = little_endian().u32(random() % 8);
    for (size_t i = 0; i < size; ++i) file.u8(random() % 256);
    files.write(kDriveStore, file, 1000 + round);

    const Reply change = delta();

    ASSERT_EQ(change.status, 0);
    ASSERT_LE(change.length, drive_reply_size(2 * 3000 / kDriveSize));
    const Reply whole = full();
    ASSERT_EQ(whole.length, drive_reply_size(size / kDriveSize));
    for (size_t i = 0; i < size / kDriveSize; ++i)
      ASSERT_EQ(slot(whole, i).slice(132, 97), file.slice(drive_file_size(i) + 132, 97));
  }
}

INSTANTIATE_TEST_SUITE_P(, GarbageInDriveFiles, testing::Range(1u, 5u));

}  // namespace
}  // namespace tests
