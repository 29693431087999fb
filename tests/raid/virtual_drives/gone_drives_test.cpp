#include <gmock/gmock.h>

#include <cerrno>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::Values;

class GoneVirtualDrives : public VirtualDriveTest {};

TEST_F(GoneVirtualDrives, AreReportedWithStatusSixAndALogLine) {
  const VirtualDrive drive = {.controller = 3, .target = 204, .guid = "GUID", .name = "volume"};
  remember({drive});
  store({}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, length_of(1));
  EXPECT_EQ(reply.bytes(), virtual_drive_header(1) + untouched_virtual_drive_slot()
                                                         .put(0, Bytes::hex("03 CC"))
                                                         .put(2, Bytes().text("GUID", 33))
                                                         .put(35, Bytes().text("volume", 16))
                                                         .put(51, Bytes::hex("06")));
  EXPECT_THAT(system_log(), ElementsAre("mcserver_storage.cpp:1744:Deleted-Event VD TargetID=204, name=volume "
                                        "mod_timestamp=-1515870811\n"));
}

TEST_F(GoneVirtualDrives, MayBeAllOfThem) {
  remember({volume(0), volume(1), volume(2)});
  store({}, 2000);
  trace_at(3);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(3) + gone_virtual_drive(volume(0)) + gone_virtual_drive(volume(1)) +
                                 gone_virtual_drive(volume(2)));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(volume(0)), gone_line(volume(1)), gone_line(volume(2))));
  EXPECT_EQ(trace(), virtual_drive_trace(1796, "number of virt-drives= 0, prev_num_drives= 3"));
}

TEST_F(GoneVirtualDrives, StandBehindTheReportedOnesInTheListsOrder) {
  remember({volume(3), volume(1), volume(2), volume(0)});
  store({volume(1, kOrdinary), volume(4)}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(5) + volume(1, kOrdinary).reported() + volume(4).reported() +
                                 gone_virtual_drive(volume(3)) + gone_virtual_drive(volume(2)) +
                                 gone_virtual_drive(volume(0)));
}

TEST_F(GoneVirtualDrives, AreForgotten) {
  remember({volume(0), volume(1)});
  store({volume(0)}, 2000);
  EXPECT_EQ(delta().length, length_of(1));
  store({volume(0)}, 3000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(GoneVirtualDrives, AreNotReportedByAFullCall) {
  remember({volume(0), volume(1)});
  store({volume(0)}, 2000);

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(slot(reply, 1), untouched_virtual_drive_slot());
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(GoneVirtualDrives, AreAllReportedWhenTheyAreEqual) {
  remember({volume(0), volume(0)});
  store({}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + gone_virtual_drive(volume(0)) + gone_virtual_drive(volume(0)));
}

TEST_F(GoneVirtualDrives, AreNotGoneWhileOneOfTheirGuidIsThere) {
  remember({volume(0), volume(0), volume(1)});
  store({volume(1), volume(0)}, 2000);

  EXPECT_EQ(delta().length, 0u);
}

TEST_F(GoneVirtualDrives, AreWrittenAndLoggedWithTheWholeWidthOfTheirTexts) {
  const VirtualDrive drive = {
      .controller = 0xFF, .target = 7, .guid = std::string(33, 'G'), .name = "ABCDEFGHIJKLMNOP"};
  remember({drive});
  store({}, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(1) + gone_virtual_drive(drive));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(drive)));
}

// ------------------------------------------------------------------------------- what shows through from before

TEST_F(GoneVirtualDrives, LieOverAPartialRecordAndLogItsStamp) {
  remember({volume(0)});
  const Bytes partial = volume(1, 0x00020304).stored().slice(0, kVirtualDriveSize - 1);
  files.write(kVirtualDriveStore, partial, 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(1) + gone_virtual_drive(volume(0), partial + Bytes::hex("A5")));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(volume(0), "131844")));
}

TEST_F(GoneVirtualDrives, LieOverASkippedRecordAndLogItsStamp) {
  remember({volume(0, 0x00030201), volume(1, 0x01020300)});
  // Compared in the other byte order, this is the stamp that is known.
  store({volume(1, 0x00030201)}, 2000);

  EXPECT_EQ(delta().bytes(),
            virtual_drive_header(1) + gone_virtual_drive(volume(0, 0x00030201), volume(1, 0x00030201).skipped()));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(volume(0), "16909056")));
}

TEST_F(GoneVirtualDrives, LieOverWhatAMovedBufferBrought) {
  remember({volume(0)});
  store({}, 2000);

  EXPECT_EQ(delta({.size = 17, .growth = {Growth::kMove}}).bytes(),
            virtual_drive_header(1, kUntouchedAfterGrowth) +
                gone_virtual_drive(volume(0), untouched_virtual_drive_slot(kUntouchedAfterGrowth)));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(volume(0), "1515870810")));
}

TEST_F(GoneVirtualDrives, MayBeSentAsWellWhenOnlyTheFirstPassFailedToReadThem) {
  remember({volume(0), volume(1)});
  store({volume(0), volume(1, kOrdinary)}, 2000);
  fail("fread", 2, EIO);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(1, kOrdinary).reported() + gone_virtual_drive(volume(1)));
  store({volume(0), volume(1)}, 3000);
  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(1)}));  // only the first one was remembered
}

// ------------------------------------------------------------------------------------------- the exported function

class FindDeletedVirtualDrives : public VirtualDriveTest {
 protected:
  // A reply with room for two records, and so many that it counts.
  static Bytes reply_with(uint8_t count) {
    return virtual_drive_header(count) + untouched_virtual_drive_slot().fill(kVirtualDriveSize, kUntouched);
  }

  uint16_t find(std::vector<uint8_t> &reply, int32_t emit) {
    return PLUGIN(find_deleted_virtdrives)(reply.data(), 1, cur.data(), 3, cached.data(), emit);
  }

  static std::vector<uint8_t> writable(const Bytes &bytes) { return {bytes.data(), bytes.data() + bytes.size()}; }

  const std::vector<VdSummary> cached = {{1, 2, "S", "one", 7}, {1, 3, "T", "two", 8}, {4, 5, "U", "three", 9}};
  const std::vector<VdSummary> cur = {{6, 6, "T", "else", 99}};
};

TEST_F(FindDeletedVirtualDrives, AppendsARecordForEachWhenItShall) {
  std::vector<uint8_t> reply = writable(reply_with(0));

  EXPECT_EQ(find(reply, 1), 2);

  const VirtualDrive first = {.controller = 1, .target = 2, .guid = "S", .name = "one"};
  const VirtualDrive second = {.controller = 4, .target = 5, .guid = "U", .name = "three"};
  EXPECT_EQ(Bytes(reply), virtual_drive_header(2) + gone_virtual_drive(first) + gone_virtual_drive(second));
  EXPECT_THAT(system_log(), ElementsAre(gone_line(first), gone_line(second)));
}

TEST_F(FindDeletedVirtualDrives, AppendsBehindTheRecordsThatAreCounted) {
  std::vector<uint8_t> reply = writable(reply_with(1));

  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(reply.data(), 1, cur.data(), 2, cached.data(), 1), 1);

  EXPECT_EQ(Bytes(reply), virtual_drive_header(2) + untouched_virtual_drive_slot() +
                              gone_virtual_drive({.controller = 1, .target = 2, .guid = "S", .name = "one"}));
}

TEST_F(FindDeletedVirtualDrives, GoesOnInTheFirstSlotWhenTheCountWraps) {
  const Bytes start =
      virtual_drive_header(255) + Bytes::repeated(255 * kVirtualDriveSize, 0) + untouched_virtual_drive_slot();
  std::vector<uint8_t> reply = writable(start);

  EXPECT_EQ(find(reply, 1), 2);

  const Bytes after(reply);
  EXPECT_EQ(after[3], 1);
  EXPECT_EQ(after.slice(length_of(255), kVirtualDriveSize),
            gone_virtual_drive({.controller = 1, .target = 2, .guid = "S", .name = "one"}));
  EXPECT_EQ(after.slice(kVirtualDriveHeaderSize, kVirtualDriveSize),
            gone_virtual_drive({.controller = 4, .target = 5, .guid = "U", .name = "three"},
                               Bytes::repeated(kVirtualDriveSize, 0)));
  EXPECT_THAT(system_log(), SizeIs(2));
}

class OddEmission : public FindDeletedVirtualDrives, public testing::WithParamInterface<int32_t> {};

TEST_P(OddEmission, OnlyCounts) {
  std::vector<uint8_t> reply = writable(reply_with(0));

  EXPECT_EQ(find(reply, GetParam()), 2);

  EXPECT_EQ(Bytes(reply), reply_with(0));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, OddEmission, Values(0, 2, -1, 257));

TEST_F(FindDeletedVirtualDrives, OnlyCountsWithoutAReply) {
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 1, cur.data(), 3, cached.data(), 1), 2);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(FindDeletedVirtualDrives, LooksAtNoMoreEntriesThanItIsTold) {
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 0, cur.data(), 3, cached.data(), 0), 3);
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 1, cur.data(), 2, cached.data(), 0), 1);
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 1, cur.data(), 0, cached.data(), 0), 0);
}

TEST_F(FindDeletedVirtualDrives, FindsNoneInANullList) {
  std::vector<uint8_t> reply = writable(reply_with(0));

  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(reply.data(), 0, nullptr, 3, cached.data(), 1), 0);
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(reply.data(), 1, cur.data(), 3, nullptr, 1), 0);

  EXPECT_EQ(Bytes(reply), reply_with(0));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(FindDeletedVirtualDrives, CountsAllThatItsInterfaceAllows) {
  const std::vector<VdSummary> very_many(65535);

  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 1, cur.data(), 65535, very_many.data(), 0), 65535);
  EXPECT_EQ(PLUGIN(find_deleted_virtdrives)(nullptr, 65535, very_many.data(), 65535, very_many.data(), 0), 0);
}

}  // namespace
}  // namespace tests
