#include <gtest/gtest.h>

#include "mcstore/collect/collector.h"

namespace tests {
namespace {

using mcstore::parse_time;

TEST(Time, TakesSecondsSince1970) {
  EXPECT_EQ(parse_time("0"), 0);
  EXPECT_EQ(parse_time("1772445600"), 1772445600);
  EXPECT_EQ(parse_time("-1"), -1);
}

TEST(Time, TakesIso8601InUtc) {
  EXPECT_EQ(parse_time("2026-03-02T10:00:00Z"), 1772445600);
  EXPECT_EQ(parse_time("2026-03-02T10:00:00"), 1772445600);
  EXPECT_EQ(parse_time("2026-03-02T10:00"), 1772445600);
  EXPECT_EQ(parse_time("2026-03-02"), 1772409600);
}

TEST(Time, TakesAnOffset) {
  EXPECT_EQ(parse_time("2026-03-02T11:30:00+01:30"), 1772445600);
  EXPECT_EQ(parse_time("2026-03-02T05:00:00-05:00"), 1772445600);
}

TEST(Time, GoesBeyond2038) { EXPECT_EQ(parse_time("2100-01-01T00:00:00Z"), 4102444800); }

TEST(Time, RefusesWhatNoCalendarOrClockHas) {
  EXPECT_EQ(parse_time("2026-02-31"), std::nullopt);
  EXPECT_EQ(parse_time("2026-02-29T10:00:00Z"), std::nullopt);
  EXPECT_EQ(parse_time("2026-03-02T10:00:60Z"), std::nullopt);
  EXPECT_EQ(parse_time("2028-02-29"), 1835395200);
}

TEST(Time, RefusesAnythingElse) {
  for (const char *text :
       {"", "soon", "12x", "2026-13-01", "2026-03-02T10:00:00+1", "2026-03-02T10:00:00Zulu", "99999999999999999999"})
    EXPECT_EQ(parse_time(text), std::nullopt) << text;
}

}  // namespace
}  // namespace tests
