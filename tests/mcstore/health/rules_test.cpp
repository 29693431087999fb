#include "mcstore/health/rules.h"

#include <gmock/gmock.h>

#include "mcstore/health/judge.h"
#include "mcstore/inventories.h"

namespace tests {
namespace {

using mcstore::Health;
using mcstore::Judge;
using mcstore::Verdict;
using testing::ElementsAre;

Verdict judged(std::string_view kind, const std::vector<FieldValue> &values) {
  return Judge({}).judge(record_of(kind, values).device());
}

MATCHER_P2(Says, health, reason, "") {
  return arg.health == health && arg.reasons == std::vector<std::string>{std::string(reason)};
}

MATCHER(IsFine, "") { return arg.health == Health::kOk && arg.reasons.empty() && arg.notes.empty(); }

MATCHER_P(IsFineWithNote, note, "") {
  return arg.health == Health::kOk && arg.reasons.empty() && arg.notes == std::vector<std::string>{note};
}

TEST(Rules, NameFieldsThatTheirKindsHave) {
  for (const mcstore::Rule &rule : mcstore::rules()) {
    const mcstore::Kind *kind = mcstore::find_kind(rule.kind);
    ASSERT_TRUE(kind) << rule.kind;
    EXPECT_LT(mcserver::find_row(kind->fields, rule.field), kind->fields.size()) << rule.kind << ", " << rule.field;
  }
}

TEST(Rules, OfControllers) {
  const auto controller = [](std::vector<FieldValue> values) {
    values.insert(values.begin(), {"is_supported", 1});
    return judged("controllers", values);
  };

  EXPECT_THAT(controller({}), IsFine());
  EXPECT_THAT(controller({{"controller_status", 1}}), Says(Health::kCritical, "does not respond"));
  EXPECT_THAT(controller({{"controller_status", 2}}), Says(Health::kUnknown, "controller status 2 is not known"));
  EXPECT_THAT(controller({{"controller_status", 4}}), Says(Health::kUnknown, "controller status gone is not known"));
  EXPECT_THAT(controller({{"memory_uncorrectable_errors", 7}}),
              Says(Health::kCritical, "7 uncorrectable memory errors"));
  EXPECT_THAT(controller({{"memory_correctable_errors", 7}}), IsFine());
  EXPECT_THAT(controller({{"is_supported", 0}}), Says(Health::kWarning, "is not supported"));
  EXPECT_THAT(controller({{"pinned_cache_state", 1}}), Says(Health::kWarning, "pinned cache is present"));
  EXPECT_THAT(controller({{"pinned_cache_state", 2}}), IsFine());
  EXPECT_THAT(controller({{"controller_error", "lost"}}), Says(Health::kWarning, "error: lost"));
  EXPECT_THAT(controller({{"pending_firmware_version", "5.1"}}), IsFineWithNote("firmware 5.1 is pending"));
}

TEST(Rules, OfDrives) {
  const auto drive = [](std::vector<FieldValue> values) {
    values.insert(values.begin(), {{"online", 1},
                                   {"rebuild_percent_complete", -1},
                                   {"copyback_percent_complete", -1},
                                   {"patrol_read_percent_complete", -1},
                                   {"clear_percent_complete", -1},
                                   {"erase_percent_complete", -1}});
    return judged("drives", values);
  };

  EXPECT_THAT(drive({}), IsFine());
  EXPECT_THAT(drive({{"fault", 1}}), Says(Health::kCritical, "has a fault"));
  EXPECT_THAT(drive({{"fault", 2}}), Says(Health::kCritical, "has a fault"));
  EXPECT_THAT(drive({{"predictive_failure_count", 3}}), Says(Health::kWarning, "predicts its failure (count 3)"));
  EXPECT_THAT(drive({{"pd_error", "foreign"}}), Says(Health::kWarning, "error: foreign"));
  EXPECT_THAT(drive({{"status", 14}, {"state", 255}, {"extended_status", 9}}), IsFine());
  EXPECT_THAT(drive({{"online", 0}}), IsFineWithNote("is not online"));
  EXPECT_THAT(drive({{"disabled_for_removal", 1}}), IsFineWithNote("is disabled for removal"));
  EXPECT_THAT(drive({{"media_err_count", 12}}), IsFineWithNote("12 media errors"));
  EXPECT_THAT(drive({{"other_err_count", 2}}), IsFineWithNote("2 other errors"));
  EXPECT_THAT(drive({{"rebuild_percent_complete", 0}}), IsFineWithNote("rebuild at 0 %"));
  EXPECT_THAT(drive({{"copyback_percent_complete", 99}}), IsFineWithNote("copyback at 99 %"));
  EXPECT_THAT(drive({{"patrol_read_percent_complete", 5}}), IsFineWithNote("patrol read at 5 %"));
  EXPECT_THAT(drive({{"clear_percent_complete", 5}}), IsFineWithNote("clear at 5 %"));
  EXPECT_THAT(drive({{"erase_percent_complete", 5}}), IsFineWithNote("erase at 5 %"));
  EXPECT_THAT(drive({{"rebuild_percent_complete", 100}}), IsFine());
  EXPECT_THAT(drive({{"rebuild_percent_complete", -5}}), IsFine());
}

TEST(Rules, OfVirtualDrives) {
  const auto virtual_drive = [](int64_t status) {
    return judged("virtual-drives", {{"status", status},
                                     {"reconstruction_percent_complete", 255},
                                     {"consistency_check_percent_complete", 255},
                                     {"init_percent_complete", 255}});
  };

  EXPECT_THAT(virtual_drive(0), IsFine());
  EXPECT_THAT(virtual_drive(1), Says(Health::kWarning, "is cache degraded"));
  EXPECT_THAT(virtual_drive(2), Says(Health::kWarning, "is partially degraded"));
  EXPECT_THAT(virtual_drive(3), Says(Health::kCritical, "is degraded"));
  EXPECT_THAT(virtual_drive(4), Says(Health::kCritical, "is offline"));
  EXPECT_THAT(virtual_drive(5), Says(Health::kUnknown, "status is unknown"));
  EXPECT_THAT(virtual_drive(6), Says(Health::kUnknown, "status is gone"));
  EXPECT_THAT(virtual_drive(7), Says(Health::kUnknown, "status is 7"));
}

TEST(Rules, OfBbus) {
  EXPECT_THAT(judged("bbus", {}), IsFine());
  EXPECT_THAT(judged("bbus", {{"voltage_low", 1}}), Says(Health::kWarning, "voltage is low"));
  EXPECT_THAT(judged("bbus", {{"temp_high", 1}}), Says(Health::kWarning, "temperature is high"));
  EXPECT_THAT(judged("bbus", {{"charging_state", 1}}), Says(Health::kWarning, "is fully discharged"));
  EXPECT_THAT(judged("bbus", {{"learn_cycle_status", 5}}), Says(Health::kWarning, "learn cycle failed"));
  EXPECT_THAT(judged("bbus", {{"capacitor", 1}, {"voltage_low", 1}}), Says(Health::kWarning, "voltage is low"));
}

TEST(Rules, OfNvmeStatuses) {
  for (const std::string_view kind : {"nvme-controllers", "nvme-drives"}) {
    const auto device = [&](int64_t status) { return judged(kind, {{"status", status}}); };

    EXPECT_THAT(device(1), IsFine());
    EXPECT_THAT(device(2), Says(Health::kCritical, "status is Unresponsive"));
    EXPECT_THAT(device(3), Says(Health::kWarning, "status is Moderate_Fault"));
    EXPECT_THAT(device(4), Says(Health::kCritical, "status is Severe_Fault"));
    EXPECT_THAT(device(6), Says(Health::kWarning, "status is Degraded"));
    EXPECT_THAT(device(0), Says(Health::kUnknown, "status is Unknown"));
    EXPECT_THAT(device(5), Says(Health::kUnknown, "status is Deleted"));
    EXPECT_THAT(device(7), Says(Health::kUnknown, "status is 7"));
  }
}

TEST(Rules, OfSwitchesDoNotConcernPlainControllers) {
  const std::vector<FieldValue> faults = {
      {"status", 1}, {"switch_status", "hot"}, {"link_status", "x2"}, {"pending_firmware_version", "2"}};
  std::vector<FieldValue> of_switch = faults;
  of_switch.push_back({"controller_type", "NVME-MSWITCH2"});

  EXPECT_THAT(judged("nvme-controllers", faults), IsFine());
  const Verdict verdict = judged("nvme-controllers", of_switch);
  EXPECT_EQ(verdict.health, Health::kWarning);
  EXPECT_THAT(verdict.reasons, ElementsAre("switch: hot", "link: x2"));
  EXPECT_THAT(verdict.notes, ElementsAre("firmware 2 is pending"));
}

TEST(Rules, OfTemperaturesOfNvmeDrives) {
  const auto drive = [](int64_t temperature, int64_t throttle, int64_t shutdown) {
    return judged("nvme-drives", {{"status", 1},
                                  {"temperature", temperature},
                                  {"throttle_threshold", throttle},
                                  {"shutdown_threshold", shutdown}});
  };

  EXPECT_THAT(drive(69, 70, 80), IsFine());
  EXPECT_THAT(drive(70, 70, 80), Says(Health::kWarning, "temperature 70 C is at the throttle threshold"));
  EXPECT_EQ(drive(80, 70, 80).health, Health::kCritical);
  EXPECT_THAT(drive(80, 70, 80).reasons, ElementsAre("temperature 80 C is at the shutdown threshold",
                                                     "temperature 80 C is at the throttle threshold"));
  EXPECT_THAT(drive(90, 0, 255), IsFine());
  EXPECT_THAT(drive(255, 255, 0), IsFine());
}

TEST(Rules, OfTheLifeOfNvmeDrives) {
  const auto drive = [](int64_t used) {
    return judged("nvme-drives", {{"status", 1}, {"drive_life_used_percent", used}});
  };

  EXPECT_THAT(drive(89), IsFine());
  EXPECT_THAT(drive(90), Says(Health::kWarning, "90 % of its life is used"));
  EXPECT_THAT(drive(99), Says(Health::kWarning, "99 % of its life is used"));
  EXPECT_THAT(drive(100), Says(Health::kCritical, "100 % of its life is used"));
  EXPECT_THAT(drive(254), Says(Health::kCritical, "254 % of its life is used"));
  EXPECT_THAT(drive(255), IsFine());
}

TEST(Rules, TellTheWorstReasonFirst) {
  const Verdict verdict =
      judged("drives", {{"online", 1}, {"predictive_failure_count", 1}, {"fault", 1}, {"pd_error", "x"}});

  EXPECT_EQ(verdict.health, Health::kCritical);
  EXPECT_THAT(verdict.reasons, ElementsAre("has a fault", "predicts its failure (count 1)", "error: x"));
}

TEST(Rules, DoNotJudgeExpanders) { EXPECT_THAT(judged("expanders", {}), IsFine()); }

}  // namespace
}  // namespace tests
