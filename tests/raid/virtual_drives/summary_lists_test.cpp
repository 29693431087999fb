#include "raid/summary_lists_tests.h"

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

VirtualDrive drive_of(const Device &device) {
  return volume(device.number, device.is_modified ? kOrdinary : kSymmetric);
}

}  // namespace

const ListedKind kListedKind = {
    .full = "mc_get_store_virtdrives",
    .delta = "mc_delta_store_virtdrives",
    .store = kVirtualDriveStore,
    .file_header = Bytes(),
    .stored = [](const Device &device) { return drive_of(device).stored(); },
    .reported = [](const Device &device) { return drive_of(device).reported(); },
    .reply_header = [](uint8_t count) { return virtual_drive_header(count); },
    .quiet_delta = Bytes(),
    .last_call = "fopen",  // of the store file
    .last_call_number = 2,
    .no_cur_list = virtual_drive_trace(1806, "cur_vd_list memory allocation failed, Cannot allocate memory"),
    .no_cached_list = virtual_drive_trace(1817, "cached_vd_list memory allocation failed, Cannot allocate memory"),
};

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(SummaryLists, AreNotMadeForAPartialRecord) {
  files.write(kVirtualDriveStore, Bytes::repeated(kVirtualDriveSize - 1, 0));

  EXPECT_EQ(full().bytes(), virtual_drive_header(0));
  EXPECT_EQ(allocations(), 0);
}

TEST_F(SummaryLists, AreComparedWithoutMemoryForLookingDrivesUp) {
  remember({0, 1, modified(1)});
  store({1, 2}, 2000);
  for (int nth = 1; nth <= 3; ++nth) fail("malloc", nth, ENOMEM);
  trace_at(9);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(2).reported() + gone_virtual_drive(volume(0)));
  EXPECT_EQ(trace(), "");
}

TEST_P(NoMemory, IsFoundBeforeAnythingIsReadOrWritten) {
  store({0});
  lose(GetParam().list, GetParam().verdict);

  EXPECT_EQ(full().buffer, Bytes::repeated(65536, kUntouched));
  EXPECT_EQ(number_of_calls("fread"), 0);
}

TEST_P(NoMemory, LetsTheNextFullCallRememberWhatIsGoneLater) {
  remember(devices_below(2));
  grow_in_vain();
  full();
  store({0, modified(1), 3}, 3000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(1, kOrdinary).reported() +
                                 gone_virtual_drive(volume(2), volume(3).skipped()));
}

// The number of the previous call is still known, but there is no list to find gone drives in.
TEST_P(NoMemory, LeavesTheNumberInTheTraceOfAnEmptiedFile) {
  remember(devices_below(2));
  grow_in_vain();
  store({}, 3000);
  trace_at(9);

  const Reply reply = delta({.size = 17});

  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), virtual_drive_trace(1796, "number of virt-drives= 0, prev_num_drives= 2"));
  store({0}, 4000);
  EXPECT_EQ(delta().bytes(), reply_of({0}));
  EXPECT_EQ(trace(), "");
}

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryFor, TheCurListLeavesAllOfTheCachedListToCompareWith) {
  remember(devices_below(3));
  grow_in_vain(kCur, verdict());
  store({2}, 3000);

  const Reply reply = delta({.size = length_of(3) - 1});

  EXPECT_THAT(reply.requests, ElementsAre(length_of(3)));
  EXPECT_EQ(reply.bytes(), virtual_drive_header(2) + gone_virtual_drive(volume(0), volume(2).skipped()) +
                               gone_virtual_drive(volume(1)));
}

TEST_P(NoMemoryFor, TheCachedListNeedsNoRoomForGoneDrives) {
  remember(devices_below(3));
  grow_in_vain(kCached, verdict());
  store({2, 0}, 3000);

  EXPECT_THAT(delta({.size = length_of(2)}).requests, IsEmpty());
}

}  // namespace
}  // namespace tests
