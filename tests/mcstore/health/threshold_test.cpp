#include "mcstore/health/threshold.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "mcstore/health/judge.h"
#include "mcstore/inventories.h"

namespace tests {
namespace {

using mcstore::Health;
using mcstore::Judge;
using mcstore::Range;
using mcstore::Threshold;
using testing::ElementsAre;

std::string refusal_of(const std::string &text) {
  try {
    Threshold::parse(text, Health::kWarning);
  } catch (const std::invalid_argument &error) {
    return error.what();
  }
  return "(accepted)";
}

TEST(Range, AlertsOutsideOfItsEnds) {
  EXPECT_FALSE(Range::parse("10")->alerts(0));
  EXPECT_FALSE(Range::parse("10")->alerts(10));
  EXPECT_TRUE(Range::parse("10")->alerts(11));
  EXPECT_TRUE(Range::parse("10")->alerts(-1));
  EXPECT_TRUE(Range::parse("10:")->alerts(9));
  EXPECT_FALSE(Range::parse("10:")->alerts(1e9));
  EXPECT_FALSE(Range::parse("~:10")->alerts(-1e9));
  EXPECT_TRUE(Range::parse("~:10")->alerts(10.5));
  EXPECT_TRUE(Range::parse("5:10")->alerts(4));
  EXPECT_FALSE(Range::parse("5:10")->alerts(5));
}

TEST(Range, AlertsInsideBehindAnAt) {
  EXPECT_TRUE(Range::parse("@5:10")->alerts(5));
  EXPECT_TRUE(Range::parse("@5:10")->alerts(10));
  EXPECT_FALSE(Range::parse("@5:10")->alerts(4));
  EXPECT_FALSE(Range::parse("@5:10")->alerts(11));
}

TEST(Range, IsNothingElse) {
  for (const char *text : {"", "@", "x", "5:x", "10:5", "5:10:15", "nan", "5 ", "~", ":10"})
    EXPECT_FALSE(Range::parse(text)) << text;
}

TEST(Threshold, SaysWhatIsWrongWithIt) {
  EXPECT_EQ(refusal_of("drives"), "'drives' is not of the form KIND.FIELD=RANGE");
  EXPECT_EQ(refusal_of("toasters.heat=1"), "'toasters' is not a kind of device");
  EXPECT_EQ(refusal_of("drives.serial_num=1"), "drives have no numeric field 'serial_num'");
  EXPECT_EQ(refusal_of("drives.media_err_count=many"), "'many' is not a range such as 10, 5:10, ~:10 or @5:10");
  EXPECT_EQ(refusal_of("bbus.capacitance=1"), "(accepted)");  // of a capacitor alone
}

TEST(Threshold, JudgesNumbersThatMeanSomething) {
  const Judge judge({.thresholds = {Threshold::parse("drives.temperature=40", Health::kCritical)}});
  const RecordOf hot = record_of("drives", {{"online", 1}, {"temp_valid", 1}, {"temperature", 41}});
  const RecordOf unknown = record_of("drives", {{"online", 1}, {"temp_valid", 0}, {"temperature", 41}});

  EXPECT_EQ(judge.judge(hot.device()).health, Health::kCritical);
  EXPECT_THAT(judge.judge(hot.device()).reasons, ElementsAre("temperature is 41 C, limit 40"));
  EXPECT_EQ(judge.judge(unknown.device()).health, Health::kOk);
}

TEST(Threshold, JudgesTheFieldsThatSomeRecordsHave) {
  const Judge judge({.thresholds = {Threshold::parse("bbus.pack_energy=10:", Health::kWarning)}});

  EXPECT_EQ(judge.judge(record_of("bbus", {{"capacitor", 1}, {"pack_energy", 9}}).device()).health, Health::kWarning);
  EXPECT_EQ(judge.judge(record_of("bbus", {{"full_capacity", 9}}).device()).health, Health::kOk);
}

}  // namespace
}  // namespace tests
