#include <gmock/gmock.h>

#include <cerrno>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr host::Verdict kNullAndNoMemory = {.fails = true, .error = ENOMEM};
constexpr host::Verdict kABlockAndNoMemory = {.fails = false, .error = ENOMEM};

// The first list to be allocated is the cur list, the second one the cached list.
constexpr int kCur = 1;
constexpr int kCached = 2;

class VirtualDriveLists : public VirtualDriveTest {
 protected:
  // A delta call for more drives than the lists have room for, while memory is short.
  Reply grow_in_vain(int list, host::Verdict verdict) {
    store(volumes_below(4), 2000);
    inject("realloc", list, verdict);
    return delta();
  }

  auto allocations() const { return number_of_calls("realloc"); }
};

// ------------------------------------------------------------------------------------------------------------ size

TEST_F(VirtualDriveLists, AreMadeWithTheFirstRecord) {
  files.write(kVirtualDriveStore, Bytes::repeated(kVirtualDriveSize - 1, 0));
  EXPECT_EQ(full().bytes(), virtual_drive_header(0));
  EXPECT_EQ(allocations(), 0);

  store(volumes_below(2));
  EXPECT_EQ(full().bytes(), virtual_drive_reply(volumes_below(2)));
  EXPECT_EQ(allocations(), 2);
}

TEST_F(VirtualDriveLists, GrowOnlyWhenTheyMust) {
  remember(volumes_below(3));

  for (const size_t count : {3u, 1u, 0u, 2u, 3u}) {
    store(volumes_below(count));
    full();
  }
  EXPECT_EQ(allocations(), 0);

  store(volumes_below(4));
  full();
  EXPECT_EQ(allocations(), 2);
}

TEST_F(VirtualDriveLists, KeepWhatIsRememberedWhenTheyGrow) {
  remember(volumes_below(2));
  store(volumes_below(10), 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.length, length_of(8));
  EXPECT_EQ(slot(reply, 0), volume(2).reported());
  EXPECT_EQ(slot(reply, 7), volume(9).reported());
}

TEST_F(VirtualDriveLists, ShrinkAndGrowWithTheFile) {
  remember(volumes_below(3));

  store(volumes_below(1), 2000);
  EXPECT_EQ(delta().length, length_of(2));
  store(volumes_below(3), 3000);
  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(1), volume(2)}));
}

TEST_F(VirtualDriveLists, StartFromNothingWhenThePlugInIsLoadedAgain) {
  remember({volume(0)});
  unload();
  load();

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveLists, AreComparedWithoutMemoryForLookingDrivesUp) {
  remember({volume(0), volume(1), volume(1, kOrdinary)});
  store({volume(1), volume(2)}, 2000);
  for (int nth = 1; nth <= 3; ++nth) fail("malloc", nth, ENOMEM);
  trace_at(9);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(2).reported() + gone_virtual_drive(volume(0)));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------- no memory

TEST_F(VirtualDriveLists, AnEarlierErrnoIsNoAllocationFailure) {
  store({volume(0)});
  inject("fopen", 2, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
}

TEST_F(VirtualDriveLists, AnErrnoOtherThanNoMemoryIsNoAllocationFailure) {
  store({volume(0)});
  inject("realloc", kCur, {.fails = false, .error = EAGAIN});
  inject("realloc", kCached, {.fails = false, .error = EAGAIN});

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
}

struct VirtualDriveShortage {
  int list;
  host::Verdict verdict;
};
void PrintTo(const VirtualDriveShortage &shortage, std::ostream *out) {
  *out << (shortage.list == kCur ? "cur list, " : "cached list, ") << (shortage.verdict.fails ? "null" : "a block");
}

class NoMemoryForVirtualDrives : public VirtualDriveLists, public testing::WithParamInterface<VirtualDriveShortage> {
 protected:
  Reply grow_in_vain() { return VirtualDriveLists::grow_in_vain(GetParam().list, GetParam().verdict); }

  static std::string expected_trace() {
    return GetParam().list == kCur
               ? virtual_drive_trace(1806, "cur_vd_list memory allocation failed, Cannot allocate memory")
               : virtual_drive_trace(1817, "cached_vd_list memory allocation failed, Cannot allocate memory");
  }
};

TEST_P(NoMemoryForVirtualDrives, AtTheFirstCallIsUnavailable) {
  store({volume(0)});
  trace_at(3);
  inject("realloc", GetParam().list, GetParam().verdict);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(reply.buffer, Bytes::repeated(65536, kUntouched));
  EXPECT_EQ(trace(), expected_trace());
  EXPECT_EQ(allocations(), GetParam().list);
  EXPECT_EQ(number_of_calls("fread"), 0);
}

TEST_P(NoMemoryForVirtualDrives, AtALaterCallIsUnavailable) {
  remember(volumes_below(2));
  trace_at(3);

  const Reply reply = grow_in_vain();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), expected_trace());
}

TEST_P(NoMemoryForVirtualDrives, LeavesTheTimeMoved) {
  remember({volume(0)});
  grow_in_vain();

  EXPECT_EQ(delta().length, 0u);
}

TEST_P(NoMemoryForVirtualDrives, IsOverWithTheNextFullCall) {
  remember(volumes_below(2));
  grow_in_vain();

  EXPECT_EQ(full().bytes(), virtual_drive_reply(volumes_below(4)));

  store({volume(0), volume(1, kOrdinary), volume(3)}, 3000);
  EXPECT_EQ(delta().bytes(), virtual_drive_header(2) + volume(1, kOrdinary).reported() +
                                 gone_virtual_drive(volume(2), volume(3).skipped()));
}

TEST_P(NoMemoryForVirtualDrives, MakesTheListsAnewThoughTheyWouldBeLongEnough) {
  remember(volumes_below(2));
  grow_in_vain();
  store({volume(0)}, 3000);
  forget_calls();

  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(allocations(), 2);
}

// The number of the previous call is still known, but there is no list to find gone drives in.
TEST_P(NoMemoryForVirtualDrives, LeavesTheNumberInTheTraceOfAnEmptiedFile) {
  remember(volumes_below(2));
  grow_in_vain();
  store({}, 3000);
  trace_at(9);

  const Reply reply = delta({.size = 17});

  EXPECT_EQ(reply.length, 0u);
  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(trace(), virtual_drive_trace(1796, "number of virt-drives= 0, prev_num_drives= 2"));
  store({volume(0)}, 4000);
  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(trace(), "");
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryForVirtualDrives,
                         Values(VirtualDriveShortage{kCur, kNullAndNoMemory},
                                VirtualDriveShortage{kCur, kABlockAndNoMemory},
                                VirtualDriveShortage{kCached, kNullAndNoMemory},
                                VirtualDriveShortage{kCached, kABlockAndNoMemory}));

class NoMemoryForVirtualDrivesAt : public VirtualDriveLists, public testing::WithParamInterface<bool> {
 protected:
  host::Verdict verdict() const { return GetParam() ? kABlockAndNoMemory : kNullAndNoMemory; }
};

// The cached list is then longer than this file would need, and it must not be cut.
TEST_P(NoMemoryForVirtualDrivesAt, TheCurListLeavesAllOfTheCachedListToCompareWith) {
  remember(volumes_below(3));
  grow_in_vain(kCur, verdict());
  store({volume(2)}, 3000);

  const Reply reply = delta({.size = length_of(3) - 1});

  EXPECT_THAT(reply.requests, ElementsAre(length_of(3)));
  EXPECT_EQ(reply.bytes(), virtual_drive_header(2) + gone_virtual_drive(volume(0), volume(2).skipped()) +
                               gone_virtual_drive(volume(1)));
}

TEST_P(NoMemoryForVirtualDrivesAt, TheCachedListMakesEveryDriveNewAndNoneGone) {
  remember(volumes_below(3));
  grow_in_vain(kCached, verdict());
  store({volume(2), volume(0)}, 3000);

  const Reply reply = delta({.size = length_of(2)});

  EXPECT_THAT(reply.requests, IsEmpty());
  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(2), volume(0)}));
  store({volume(0), volume(2)}, 4000);
  EXPECT_EQ(delta().length, 0u);
}

// In place of the lost list there are zeros, which look like this record.
TEST_P(NoMemoryForVirtualDrivesAt, TheCachedListMatchesNotEvenARecordOfZeros) {
  remember(volumes_below(2));
  grow_in_vain(kCached, verdict());
  files.write(kVirtualDriveStore, Bytes::repeated(kVirtualDriveSize, 0), 3000);

  EXPECT_EQ(delta().bytes(), virtual_drive_header(1).fill(kVirtualDriveSize, 0));
}

INSTANTIATE_TEST_SUITE_P(, NoMemoryForVirtualDrivesAt, testing::Bool());

}  // namespace
}  // namespace tests
