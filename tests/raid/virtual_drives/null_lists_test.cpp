#include <gmock/gmock.h>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Values;

// A list that realloc did not give, though it saw no error: this is no failure, and what follows copes with it.
constexpr host::Verdict kNullAndNoError = {.fails = true, .error = 0};

// The first list to be allocated is the cur list, the second one the cached list.
constexpr int kCur = 1;
constexpr int kCached = 2;

class NullVirtualDriveLists : public VirtualDriveTest {};

const std::string kNull = "\\(nil\\)";
const std::string kBlock = "0x[0-9a-f]+";

// What errno says in the second line is left over from another call.
std::string missing(const std::string &cur, const std::string &cached) {
  return "<get_store_virtdrives: 1839> \\[get_store_virtdrives\\]cur_vd_list= " + cur + ", cached_vd_list= " + cached +
         "\n<get_store_virtdrives: 1961> \\[get_store_virtdrives\\]Error reading file /var/storvirtdrive_info, "
         "[A-Za-z ]+\n";
}

class NullVirtualDriveList : public NullVirtualDriveLists, public testing::WithParamInterface<int> {
 protected:
  void lose_it() { inject("realloc", GetParam(), kNullAndNoError); }
};

TEST_P(NullVirtualDriveList, EndsBothPassesAtTheFirstRecord) {
  store(volumes_below(2));
  lose_it();
  files.write_text("/var/mctool_stordebug", "");

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), virtual_drive_header(0));
  EXPECT_EQ(slot(reply, 0), volume(0).stored());
  EXPECT_EQ(slot(reply, 1), untouched_virtual_drive_slot());
  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

TEST_P(NullVirtualDriveList, IsTracedWithBothPointersAndAsAnUnreadFile) {
  store({volume(0)});
  trace_at(3);
  lose_it();

  full();

  EXPECT_THAT(trace(), MatchesRegex(GetParam() == kCur ? missing(kNull, kBlock) : missing(kBlock, kNull)));
}

TEST_P(NullVirtualDriveList, LeavesNothingRememberedAndNothingGone) {
  remember(volumes_below(2));
  store(volumes_below(4), 2000);
  lose_it();
  EXPECT_EQ(delta().length, 0u);
  EXPECT_THAT(system_log(), IsEmpty());

  // Where the exchange made the lost one the cached list, it takes one more call.
  full();
  EXPECT_EQ(full().bytes(), virtual_drive_reply(volumes_below(4)));
  store({volume(0)}, 3000);
  EXPECT_EQ(delta().length, length_of(3));
}

INSTANTIATE_TEST_SUITE_P(, NullVirtualDriveList, Values(kCur, kCached));

TEST_F(NullVirtualDriveLists, AFileWithoutAWholeRecordNeedsNone) {
  trace_at(9);
  for (const uint32_t size : {0u, 1u, kVirtualDriveSize - 1}) {
    files.write(kVirtualDriveStore, Bytes::repeated(size, 0x77));

    EXPECT_EQ(full().bytes(), virtual_drive_header(0));
    EXPECT_EQ(trace(), "");
  }
}

}  // namespace
}  // namespace tests
