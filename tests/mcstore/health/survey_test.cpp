#include "mcstore/health/survey.h"

#include <gmock/gmock.h>

#include "mcstore/inventories.h"

namespace tests {
namespace {

using mcstore::Health;
using mcstore::Judge;
using mcstore::KindInventory;
using mcstore::KindStatus;
using mcstore::Survey;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Survey surveyed(const std::vector<KindInventory> &inventories, const Judge &judge = Judge({}),
                std::vector<std::string> ignored = {}) {
  mcstore::Surveyor surveyor(judge, std::move(ignored));
  for (const KindInventory &inventory : inventories) surveyor.add(inventory);
  return std::move(surveyor).finish();
}

// An inventory of records with these fields.
KindInventory made_inventory(const std::string &kind, const std::vector<std::vector<FieldValue>> &devices) {
  std::vector<RecordOf> records;
  for (const auto &values : devices) records.push_back(record_of(kind, values));
  return inventory_of(kind, records);
}

KindInventory without_data(std::string_view kind, KindStatus status) {
  KindInventory inventory(mcstore::kind_named(kind));
  inventory.status = status;
  inventory.error = "the reason";
  return inventory;
}

TEST(Survey, CountsAndSumsUpAndTellsTheTemperatures) {
  const Survey survey =
      surveyed({made_inventory("drives", {{{"raw_size", 1000}, {"temp_valid", 1}, {"temperature", 40}},
                                          {{"raw_size", 500}, {"temperature", 99}, {"fault", 1}},
                                          {{"temp_valid", 1}, {"temperature", 25}}})});

  ASSERT_THAT(survey.kinds, SizeIs(1));
  EXPECT_EQ(survey.kinds[0].devices, 3u);
  EXPECT_EQ(survey.kinds[0].capacity, 1500u);
  EXPECT_EQ(survey.kinds[0].temperatures->least, 25);
  EXPECT_EQ(survey.kinds[0].temperatures->greatest, 40);
  EXPECT_EQ(survey.kinds[0].counts.at(Health::kOk), 2u);
  EXPECT_EQ(survey.kinds[0].counts.at(Health::kCritical), 1u);
  EXPECT_EQ(survey.kinds[0].health, Health::kCritical);
  EXPECT_EQ(survey.health, Health::kCritical);
}

TEST(Survey, PutsTheWorstFirst) {
  const Survey survey = surveyed({
      made_inventory("bbus", {{{"voltage_low", 1}}}),
      without_data("drives", KindStatus::kUnreadable),
      made_inventory("virtual-drives", {{{"controller_index", 2}, {"target_id", 5}, {"status", 4}}}),
  });

  ASSERT_THAT(survey.attention, SizeIs(3));
  EXPECT_EQ(survey.attention[0].device, "vd c2/5");
  EXPECT_EQ(survey.attention[0].place, "controller 2");
  EXPECT_EQ(survey.attention[1].device, "bbu c0");
  EXPECT_EQ(survey.attention[2].device, "");
  EXPECT_EQ(survey.attention[2].kind->name, "drives");
  EXPECT_THAT(survey.attention[2].reasons, ElementsAre("the reason"));
}

TEST(Survey, TakesUnreadableDamagedAndSimulatedDataForUnknown) {
  for (const KindStatus status : {KindStatus::kUnreadable, KindStatus::kDamaged, KindStatus::kSimulated})
    EXPECT_EQ(surveyed({made_inventory("bbus", {{}}), without_data("drives", status)}).health, Health::kUnknown);
}

TEST(Survey, PassesOverAbsentKindsUnlessAllAre) {
  EXPECT_EQ(surveyed({made_inventory("bbus", {{}}), without_data("drives", KindStatus::kAbsent)}).health, Health::kOk);
  EXPECT_EQ(surveyed({without_data("drives", KindStatus::kAbsent)}).health, Health::kUnknown);
  EXPECT_EQ(surveyed({}).health, Health::kUnknown);
}

TEST(Survey, BelievesNoSubsystemThatIsNotReady) {
  for (const auto &[kind, good] :
       {std::pair("controllers", 2u), std::pair("nvme-controllers", 4u), std::pair("nvme-drives", 4u)}) {
    KindInventory inventory(mcstore::kind_named(kind));
    inventory.state = good;
    EXPECT_EQ(surveyed({inventory}).health, Health::kOk) << kind;
    for (const uint64_t state : {0u, 1u, 3u, 5u}) {
      inventory.state = state;
      EXPECT_EQ(surveyed({inventory}).health, Health::kUnknown) << kind << ' ' << state;
    }
  }
}

TEST(Survey, TellsAStateByItsWord) {
  KindInventory inventory(mcstore::kind_named("controllers"));
  inventory.state = 1;

  EXPECT_THAT(surveyed({inventory}).attention.at(0).reasons, ElementsAre("the subsystem's state is not ready"));
}

TEST(Survey, BelievesNoDataThatAreTooOld) {
  KindInventory inventory = made_inventory("bbus", {{}});
  inventory.store = mcstore::StoreFacts{.path = "", .modified = {.tv_sec = 1000, .tv_nsec = 0}};

  EXPECT_EQ(surveyed({inventory}, Judge({.stale = 500, .now = 1500})).health, Health::kOk);
  const Survey old = surveyed({inventory}, Judge({.stale = 499, .now = 1500}));
  EXPECT_EQ(old.health, Health::kUnknown);
  EXPECT_THAT(old.attention.at(0).reasons, ElementsAre("the data are 8 min old"));
  EXPECT_EQ(old.kinds.at(0).age, 500);
}

TEST(Survey, PassesOverIgnoredDevices) {
  const KindInventory inventory =
      made_inventory("bbus", {{{"controller_index", 0}, {"voltage_low", 1}}, {{"controller_index", 1}}});

  const Survey survey = surveyed({inventory}, Judge({}), {"bbu c0"});

  EXPECT_EQ(survey.health, Health::kOk);
  EXPECT_EQ(survey.devices, 1u);
  EXPECT_EQ(surveyed({inventory}, Judge({}), {"c0"}).devices, 1u);
  EXPECT_EQ(surveyed({inventory}, Judge({}), {"bbus bbu c0"}).devices, 1u);
  EXPECT_EQ(surveyed({inventory}, Judge({}), {"c2"}).devices, 2u);
  EXPECT_THAT(survey.attention, IsEmpty());
}

}  // namespace
}  // namespace tests
