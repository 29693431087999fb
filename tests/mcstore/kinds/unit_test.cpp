#include "mcstore/kinds/unit.h"

#include <gtest/gtest.h>

namespace tests {
namespace {

using mcserver::Unit;
using mcstore::in_unit;

TEST(Units, BytesAreShownInTheLargestUnitThatIsWhole) {
  EXPECT_EQ(in_unit(0, Unit::kBytes), "0 B");
  EXPECT_EQ(in_unit(1023, Unit::kBytes), "1023 B");
  EXPECT_EQ(in_unit(1024, Unit::kBytes), "1.0 KiB");
  EXPECT_EQ(in_unit(1536, Unit::kBytes), "1.5 KiB");
  EXPECT_EQ(in_unit(1048576, Unit::kBytes), "1.0 MiB");
  EXPECT_EQ(in_unit(300000000000, Unit::kBytes), "279.4 GiB");
  EXPECT_EQ(in_unit(UINT64_MAX, Unit::kBytes), "16.0 EiB");
}

TEST(Units, BytesAreNeverAThousandAndTwentyFourOfAUnit) {
  EXPECT_EQ(in_unit(1048575, Unit::kBytes), "1.0 MiB");
  EXPECT_EQ(in_unit(1048500, Unit::kBytes), "1023.9 KiB");
}

TEST(Units, HoursAreDaysAsWellFromTwoDaysOn) {
  EXPECT_EQ(in_unit(47, Unit::kHours), "47 h");
  EXPECT_EQ(in_unit(48, Unit::kHours), "48 h (2 days)");
  EXPECT_EQ(in_unit(18250, Unit::kHours), "18250 h (760 days)");
}

TEST(Units, TimeStampsAreUtc) {
  EXPECT_EQ(in_unit(1, Unit::kTimeStamp), "1970-01-01 00:00:01 UTC");
  EXPECT_EQ(in_unit(4294967294, Unit::kTimeStamp), "2106-02-07 06:28:14 UTC");
  EXPECT_EQ(in_unit(0, Unit::kTimeStamp), "1970-01-01 00:00:00 UTC");  // none only where the row says so
  EXPECT_EQ(in_unit(4294967295, Unit::kTimeStamp), "2106-02-07 06:28:15 UTC");
  EXPECT_EQ(in_unit(static_cast<uint64_t>(-5), Unit::kTimeStamp), "-5");  // of a signed field
}

TEST(Units, TheRestIsANumberWithItsUnit) {
  EXPECT_EQ(in_unit(7, Unit::kSeconds), "7 s");
  EXPECT_EQ(in_unit(7, Unit::kDays), "7 days");
  EXPECT_EQ(in_unit(7, Unit::kNone), "7");
}

}  // namespace
}  // namespace tests
