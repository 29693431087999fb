#include <gmock/gmock.h>

#include <cerrno>

#include "raid/drives/drive_test.h"
#include "raid/drives/full_record.h"

namespace tests {
namespace {

using testing::Contains;
using testing::IsEmpty;

class FullDriveInventory : public DriveTest {};

TEST_F(FullDriveInventory, HasEveryDrive) {
  store({numbered_drive(0), numbered_drive(1), numbered_drive(2)});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, drive_reply_size(3));
  EXPECT_EQ(reply.bytes(), drive_reply(3, {numbered_drive(0), numbered_drive(1), numbered_drive(2)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(FullDriveInventory, ConvertsEachNumberToBigEndianAndNothingElse) {
  files.write(kDriveStore, little_endian().u32(1) + full_drive_record(Bytes::Order::kLittle));

  EXPECT_EQ(full().bytes(), drive_header(1, 1) + full_drive_record(Bytes::Order::kBig));
}

TEST_F(FullDriveInventory, OfAnEmptyFileIsAHeader) {
  store({});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 20u);
  EXPECT_EQ(reply.bytes(), drive_header(0, 0));
}

TEST_F(FullDriveInventory, DoesNotDependOnTheNumberThatIsAnnounced) {
  for (const uint32_t announced : {0u, 1u, 2u, 3u, 255u, 256u, 65535u, 65536u}) {
    store(announced, {numbered_drive(0), numbered_drive(1)});

    EXPECT_EQ(full({.growth = {Growth::kMove}}).bytes().slice(kDriveHeaderSize, 2 * kDriveSize),
              numbered_drive(0).reported() + numbered_drive(1).reported())
        << announced;
  }
}

TEST_F(FullDriveInventory, AnnouncesTheLowSixteenBits) {
  store(0x00010203, {numbered_drive(0)});

  const Reply reply = full({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes().slice(0, 12), Bytes::hex("28 00 00 02 03 00 01") + big_endian().u32(kDriveSize).u8(0));
}

TEST_F(FullDriveInventory, IsTheSameWhenItIsRepeated) {
  store({numbered_drive(0)});
  full();

  EXPECT_EQ(full().bytes(), drive_reply(1, {numbered_drive(0)}));
}

TEST_F(FullDriveInventory, LeavesAPartialRecordOut) {
  files.write(kDriveStore, drive_file(1, {numbered_drive(0)}) + numbered_drive(1).stored().slice(0, kDriveSize - 1));

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), drive_reply(1, {numbered_drive(0)}));
  EXPECT_EQ(slot(reply, 1), numbered_drive(1).stored().slice(0, kDriveSize - 1).fill(1, 0xA5));
}

TEST_F(FullDriveInventory, LocksTheFamilysLockFileAndReadsItsOwn) {
  store({numbered_drive(0)});

  full();

  EXPECT_THAT(calls(), Contains("fopen /var/storctlr_info"));
  EXPECT_THAT(calls(), Contains("fopen /var/storphydrive_info"));
  EXPECT_EQ(number_of_calls("flock 1"), 1);
}

TEST_F(FullDriveInventory, StaysLockedUntilTheListsAreDumped) {
  store({numbered_drive(0)});
  files.write_text("/var/mctool_pddebug", "");
  full();
  forget_calls();

  full();

  const auto last_dump = std::find(calls().rbegin(), calls().rend(), "fopen /var/mctool_pddebug.txt");
  const auto unlock = std::find(calls().rbegin(), calls().rend(), "flock 8");
  EXPECT_LT(unlock, last_dump);
}

// ------------------------------------------------------------------------------------------- what a failure leaves

TEST_F(FullDriveInventory, WithoutAStoreFileHasNoData) {
  trace_at(3);

  for (const Reply &reply : {full(), delta()}) {
    EXPECT_EQ(reply.status, -37);
    EXPECT_EQ(reply.length, 0u);
    EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  }
  EXPECT_EQ(trace(), "");
}

TEST_F(FullDriveInventory, WithoutALockFileHasNoData) {
  store({numbered_drive(0)});
  files.remove("/var/storctlr_info");

  EXPECT_EQ(full().status, -37);
}

class ShortDriveHeader : public DriveTest, public testing::WithParamInterface<size_t> {};

TEST_P(ShortDriveHeader, IsNoDataWithoutAWord) {
  trace_at(9);
  files.write(kDriveStore, drive_file(7, {}).slice(0, GetParam()));

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ShortDriveHeader, testing::Range(size_t{0}, size_t{4}));

TEST_F(FullDriveInventory, ThatCannotReadTheHeaderHasConsumedTheChange) {
  files.write(kDriveStore, Bytes(), 1000);
  full();
  store({numbered_drive(0)}, 1000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(FullDriveInventory, WithAReadErrorHasWhatCameBefore) {
  trace_at(3);
  store({numbered_drive(0), numbered_drive(1)});
  fail("fread", 3, EIO);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), drive_header(2, 1) + numbered_drive(0).reported());
  EXPECT_EQ(trace(),
            "<get_store_phydrives: 1495> [get_store_phydrives]Error reading file /var/storphydrive_info, "
            "Input/output error\n");
  EXPECT_THAT(system_log(), IsEmpty());
}

// --------------------------------------------------------------------------------------------- null and odd arguments

TEST_F(FullDriveInventory, IsRefusedWithoutALength) {
  store({numbered_drive(0)});
  std::vector<uint8_t> buffer(1000, kUntouched);

  EXPECT_EQ(PLUGIN(mc_get_store_phydrives)(nullptr, buffer.data(), 1000, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_delta_store_phydrives)(nullptr, buffer.data(), 1000, nullptr), -35);
  EXPECT_EQ(PLUGIN(get_store_phydrives)(nullptr, buffer.data(), 1000, nullptr, 0), -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(1000, kUntouched));
}

TEST_F(FullDriveInventory, IsRefusedWithoutABuffer) {
  store({numbered_drive(0)});
  uint32_t length = 77;

  EXPECT_EQ(PLUGIN(get_store_phydrives)(nullptr, nullptr, 65536, &length, 0), -35);
  EXPECT_EQ(length, 0u);
}

class OddDeltaFlag : public DriveTest, public testing::WithParamInterface<int32_t> {};

TEST_P(OddDeltaFlag, NeitherFiltersNorReportsGoneDrivesAndHasNoLength) {
  store({numbered_drive(0), numbered_drive(1)});
  full();
  store({numbered_drive(0)}, 1000);
  std::vector<uint8_t> buffer(2000, kUntouched);
  uint32_t length = 77;

  EXPECT_EQ(PLUGIN(get_store_phydrives)(nullptr, buffer.data(), 2000, &length, GetParam()), 0);

  EXPECT_EQ(length, 0u);
  EXPECT_EQ(Bytes(buffer).slice(0, drive_reply_size(1)), drive_reply(1, {numbered_drive(0)}));
  EXPECT_EQ(Bytes(buffer).slice(drive_reply_size(1), kDriveSize), untouched_drive_slot());
}

INSTANTIATE_TEST_SUITE_P(, OddDeltaFlag, testing::Values(2, -1, 256));

}  // namespace
}  // namespace tests
