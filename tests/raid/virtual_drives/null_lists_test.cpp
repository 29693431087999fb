#include <gmock/gmock.h>

#include "raid/listed_kind.h"
#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;

const std::string kNull = "\\(nil\\)";
const std::string kBlock = "0x[0-9a-f]+";

// What errno says in the second line is left over from another call.
std::string missing(const std::string &cur, const std::string &cached) {
  return "<get_store_virtdrives: 1839> \\[get_store_virtdrives\\]cur_vd_list= " + cur + ", cached_vd_list= " + cached +
         "\n<get_store_virtdrives: 1961> \\[get_store_virtdrives\\]Error reading file /var/storvirtdrive_info, "
         "[A-Za-z ]+\n";
}

TEST_P(NullList, IsTracedWithBothPointersAndAsAnUnreadFile) {
  store({0});
  trace_at(3);
  lose();

  full();

  EXPECT_THAT(trace(), MatchesRegex(GetParam() == kCur ? missing(kNull, kBlock) : missing(kBlock, kNull)));
}

TEST_P(NullList, LogsNoneAsGoneAndForgetsThem) {
  remember(devices_below(2));
  store(devices_below(4), 2000);
  lose();
  delta();
  EXPECT_THAT(system_log(), IsEmpty());

  full();
  full();
  store({0}, 3000);
  EXPECT_EQ(delta().length, length_of(3));
}

class NullVirtualDriveLists : public VirtualDriveTest {};

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
