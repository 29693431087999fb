#include "raid/virtual_drives/full_record.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

class VirtualDriveInventory : public VirtualDriveTest {};

TEST_F(VirtualDriveInventory, HasEveryDriveInTheFilesOrder) {
  store({volume(2), volume(0), volume(1, kOrdinary)});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, length_of(3));
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(2), volume(0), volume(1, kOrdinary)}));
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(VirtualDriveInventory, ConvertsEachNumberToBigEndianAndNothingElse) {
  files.write(kVirtualDriveStore, full_virtual_drive_record(Bytes::Order::kLittle));

  EXPECT_EQ(full().bytes(), virtual_drive_header(1) + full_virtual_drive_record(Bytes::Order::kBig));
}

TEST_F(VirtualDriveInventory, OfAnEmptyFileIsAHeader) {
  trace_at(9);
  store({});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 17u);
  EXPECT_EQ(reply.buffer, virtual_drive_header(0).fill(65536 - 17, kUntouched));
  EXPECT_EQ(trace(), "");
}

TEST_F(VirtualDriveInventory, IsTheSameWhenItIsRepeated) {
  remember({volume(0)});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveInventory, OfAnEmptiedFileIsAHeaderAndATrace) {
  remember({volume(0), volume(1)});
  store({});
  trace_at(3);

  EXPECT_EQ(full().bytes(), virtual_drive_header(0));
  EXPECT_EQ(trace(), virtual_drive_trace(1796, "number of virt-drives= 0, prev_num_drives= 2"));
  EXPECT_EQ(full().bytes(), virtual_drive_header(0));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------- partial records

TEST_F(VirtualDriveInventory, AlmostARecordIsNone) {
  files.write(kVirtualDriveStore, volume(0).stored().slice(0, kVirtualDriveSize - 1));

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), virtual_drive_header(0));
  EXPECT_EQ(slot(reply, 0), volume(0).stored().slice(0, kVirtualDriveSize - 1).fill(1, kUntouched));
}

TEST_F(VirtualDriveInventory, AlmostARecordIsAnEmptiedFile) {
  remember({volume(0)});
  files.write(kVirtualDriveStore, volume(0).stored().slice(0, kVirtualDriveSize - 1));
  trace_at(3);

  EXPECT_EQ(full().bytes(), virtual_drive_header(0));
  EXPECT_EQ(trace(), virtual_drive_trace(1796, "number of virt-drives= 0, prev_num_drives= 1"));
}

TEST_F(VirtualDriveInventory, TwoBytesMoreThanTwoRecordsAreTwo) {
  trace_at(9);
  files.write(kVirtualDriveStore, virtual_drive_file({volume(0), volume(1)}) + Bytes::hex("77 78"));

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0), volume(1)}));
  EXPECT_EQ(slot(reply, 2), Bytes::hex("77 78").fill(kVirtualDriveSize - 2, kUntouched));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------ hot spares

class HotSparesOfAVirtualDrive : public VirtualDriveTest, public testing::WithParamInterface<uint8_t> {};

TEST_P(HotSparesOfAVirtualDrive, AreConvertedAsFarAsTheyCount) {
  Bytes before = Bytes::repeated(kVirtualDriveSize, 0).put(94, Bytes().u8(GetParam()));
  Bytes after = before;
  for (size_t number = 0; number < 256; ++number) {
    const HotSpareBytes spare = {.controller = 1,
                                 .slot = 2,
                                 .span = 3,
                                 .starting_block = 0x0102030405060000 + number,
                                 .number_of_blocks = 0x1112131415160000 + number,
                                 .tail = 4};
    before.put(95 + 20 * number, spare.in(Bytes::Order::kLittle));
    after.put(95 + 20 * number, spare.in(number < GetParam() ? Bytes::Order::kBig : Bytes::Order::kLittle));
  }
  files.write(kVirtualDriveStore, before);

  EXPECT_EQ(full().bytes(), virtual_drive_header(1) + after);
}

INSTANTIATE_TEST_SUITE_P(, HotSparesOfAVirtualDrive, Values(0, 1, 128, 255));

// ----------------------------------------------------------------------------------------------------- all-zero GUIDs

const std::string kZeros(33, '0');

std::string all_zeros_line(const std::string &guid_and_name) {
  return "mcserver_storage.cpp:1935:guidAllZeroes: ctlrIdx=200, targetId=201, guid=" + guid_and_name + "\n";
}

TEST_F(VirtualDriveInventory, LogsAGuidOfZerosAndReportsTheDriveAllTheSame) {
  const VirtualDrive drive = {.controller = 200, .target = 201, .guid = kZeros, .name = "ABC"};
  store({volume(0), drive});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0), drive}));
  EXPECT_THAT(system_log(), ElementsAre(all_zeros_line(kZeros + "ABC")));
}

TEST_F(VirtualDriveInventory, LogsAGuidOfZerosWhereverTheTextEnds) {
  const VirtualDrive drive = {
      .controller = 200, .target = 201, .guid = kZeros, .name = "ABCDEFGHIJKLMNOP", .status = 'S', .size = 0x44434241};
  store({drive});

  full();

  EXPECT_THAT(system_log(), ElementsAre(all_zeros_line(kZeros + "ABCDEFGHIJKLMNOPSABCD")));
}

TEST_F(VirtualDriveInventory, LogsAGuidOfZerosAsOftenAsItIsReported) {
  VirtualDrive drive = {.controller = 200, .target = 201, .guid = kZeros, .name = ""};
  store({drive});
  delta();
  EXPECT_THAT(system_log(), ElementsAre(all_zeros_line(kZeros)));
  store({drive}, 2000);
  delta();
  EXPECT_THAT(system_log(), IsEmpty());
  drive.stamp = kOrdinary;
  store({drive, drive}, 3000);
  delta();
  EXPECT_THAT(system_log(), ElementsAre(all_zeros_line(kZeros), all_zeros_line(kZeros)));
}

class AlmostAllZeros : public VirtualDriveTest, public testing::WithParamInterface<std::string> {};

TEST_P(AlmostAllZeros, IsAGuidLikeAnyOther) {
  const VirtualDrive drive = {.guid = GetParam(), .name = "0000"};
  store({drive});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({drive}));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, AlmostAllZeros,
                         Values(std::string(32, '0'), std::string(32, '0') + "1", "1" + std::string(32, '0'),
                                std::string(32, '0') + "O", std::string()));

// ------------------------------------------------------------------------------------------------------------ lock

TEST_F(VirtualDriveInventory, LocksTheFamilysLockFileAndReadsItsOwn) {
  store({volume(0)});

  full();

  EXPECT_THAT(calls(), Contains("fopen /var/storctlr_info"));
  EXPECT_THAT(calls(), Contains("fopen /var/storvirtdrive_info"));
  EXPECT_EQ(number_of_calls("flock 1"), 1);
  EXPECT_EQ(number_of_calls("flock 8"), 1);
}

TEST_F(VirtualDriveInventory, IsUnlockedAfterTheRecordsAndBeforeTheListsAreDumped) {
  files.write_text("/var/mctool_vddebug", "");
  store({volume(0)});

  full();

  const auto is_dump = [](const std::string &call) { return call == "fopen /var/mctool_vddebug.txt"; };
  const auto unlock = std::ranges::find(calls(), "flock 8");
  EXPECT_EQ(std::count_if(calls().begin(), unlock, is_dump), 2);
  EXPECT_EQ(std::count_if(unlock, calls().end(), is_dump), 2);
  EXPECT_EQ(std::count(unlock, calls().end(), "fread"), 0);
}

// ------------------------------------------------------------------------------------------- what a failure leaves

TEST_F(VirtualDriveInventory, WithoutAStoreFileHasNoData) {
  trace_at(3);

  for (const Reply &reply : {full(), delta()}) {
    EXPECT_EQ(reply.status, -37);
    EXPECT_EQ(reply.length, 0u);
    EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  }
  EXPECT_EQ(trace(), "");
}

TEST_F(VirtualDriveInventory, WithoutALockFileHasNoData) {
  store({volume(0)});
  files.remove("/var/storctlr_info");

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(VirtualDriveInventory, ThatCannotBeOpenedOrLockedIsUnavailable) {
  store({volume(0)});
  fail("fopen", 2, EACCES);
  EXPECT_EQ(full().status, -35);
  fail("flock", 1, ENOLCK);
  EXPECT_EQ(full().status, -35);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0)}));  // the change is still to come
}

TEST_F(VirtualDriveInventory, WithAReadErrorHasWhatCameBefore) {
  trace_at(3);
  store({volume(0), volume(1)});
  fail("fread", 5, EIO);  // three reads of the first pass, one record of the second

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(trace(), virtual_drive_read_error("Input/output error"));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(VirtualDriveInventory, WithAReadErrorBehindTheLastRecordIsTraced) {
  trace_at(3);
  store({volume(0)});
  fail("fread", 4, EIO);

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(trace(), virtual_drive_read_error("Input/output error"));
}

TEST_F(VirtualDriveInventory, WithAReadErrorInTheFirstPassIsCompleteWithoutATrace) {
  trace_at(9);
  store({volume(0), volume(1)});
  fail("fread", 2, EIO);

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0), volume(1)}));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------ odd arguments

TEST_F(VirtualDriveInventory, IsRefusedWithoutALength) {
  store({volume(0)});
  std::vector<uint8_t> buffer(6000, kUntouched);

  EXPECT_EQ(PLUGIN(mc_get_store_virtdrives)(nullptr, buffer.data(), 6000, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_delta_store_virtdrives)(nullptr, buffer.data(), 6000, nullptr), -35);
  EXPECT_EQ(PLUGIN(get_store_virtdrives)(nullptr, buffer.data(), 6000, nullptr, 0), -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(6000, kUntouched));
}

TEST_F(VirtualDriveInventory, IsRefusedWithoutABuffer) {
  store({volume(0)});
  uint32_t length = 77;

  EXPECT_EQ(PLUGIN(get_store_virtdrives)(nullptr, nullptr, 65536, &length, 0), -35);
  EXPECT_EQ(length, 0u);
  EXPECT_TRUE(files.is_unlocked("/var/storctlr_info"));
}

}  // namespace
}  // namespace tests
