#include "mcstore/views/selection.h"

#include <gmock/gmock.h>

#include "mcstore/inventories.h"

namespace tests {
namespace {

using mcstore::Filter;
using mcstore::Selection;
using testing::ElementsAre;

// Four drives: c0/e0/s10 is hot and has a fault, c0/e0/s9 has no temperature.
mcstore::KindInventory four_drives() {
  const auto drive = [](uint64_t slot, uint64_t temperature, const std::string &serial) {
    return RecordOf("drives")
        .number("slot_num", slot)
        .number("temp_valid", temperature == 0 ? 0 : 1)
        .number("temperature", temperature)
        .text("serial_num", serial);
  };
  return inventory_of("drives", {drive(10, 70, "B").number("fault", 1), drive(9, 0, "A").number("link_speed", 4),
                                 drive(11, 9, "D"), drive(8, 31, "C").number("predictive_failure_count", 1)});
}

std::vector<size_t> selected(const Selection &selection) {
  return mcstore::select(four_drives(), selection, mcstore::Judge({}));
}

std::vector<size_t> filtered(const std::string &filter) { return selected({.filters = {*Filter::parse(filter)}}); }

TEST(Selection, IsEveryDeviceInItsOrder) { EXPECT_THAT(selected({}), ElementsAre(0, 1, 2, 3)); }

TEST(Selection, IsTheDevicesThatWereNamed) {
  EXPECT_THAT(selected({.devices = {"c0/e0/s11", "A"}}), ElementsAre(1, 2));
  EXPECT_THAT(selected({.devices = {"c0/e0/s1"}}), ElementsAre());
}

TEST(Selection, ComparesWithWhatIsShownOrTheNumber) {
  EXPECT_THAT(filtered("link_speed=12 GB/S"), ElementsAre(1));
  EXPECT_THAT(filtered("LINK_SPEED=4"), ElementsAre(1));
  EXPECT_THAT(filtered("link_speed=0x4"), ElementsAre(1));
  EXPECT_THAT(filtered("temp=31"), ElementsAre(3));
  EXPECT_THAT(filtered("temp=31 c"), ElementsAre(3));
  EXPECT_THAT(filtered("temp=none"), ElementsAre(1));
  EXPECT_THAT(filtered("temp=0"), ElementsAre());  // it is not known to be 0
  EXPECT_THAT(filtered("rebuild_start_timestamp=-1"), ElementsAre());
  EXPECT_THAT(filtered("temp=31x"), ElementsAre());
  EXPECT_THAT(filtered("serial="), ElementsAre());
}

TEST(Selection, ComparesHealthAndNames) {
  EXPECT_THAT(filtered("health=critical"), ElementsAre(0));
  EXPECT_THAT(filtered("device=c0/e0/s8"), ElementsAre(3));
}

TEST(Selection, HasOnlyWhatEveryFilterAllows) {
  EXPECT_THAT(selected({.filters = {{"fault", "false"}, {"health", "OK"}}}), ElementsAre(1, 2));
  EXPECT_THAT(selected({.filters = {{"fault", "false"}, {"no_such_field", "OK"}}}), ElementsAre());
}

TEST(Selection, SortsNumbersAsNumbersAndUnknownOnesLast) {
  EXPECT_THAT(selected({.sort = "TEMP"}), ElementsAre(2, 3, 0, 1));
}

TEST(Selection, SortsTextsSoThatTheNumbersInThemAreInOrder) {
  EXPECT_THAT(selected({.sort = "device"}), ElementsAre(3, 1, 0, 2));
  EXPECT_THAT(selected({.sort = "serial"}), ElementsAre(1, 0, 3, 2));
}

TEST(Selection, SortsHealthFromTheWorstOnAndKeepsTheOrderOtherwise) {
  EXPECT_THAT(selected({.sort = "health"}), ElementsAre(0, 3, 1, 2));
  EXPECT_THAT(selected({.sort = "no_such_column"}), ElementsAre(0, 1, 2, 3));
}

TEST(Selection, SortsNegativeNumbersBeforeTheOthers) {
  const auto at = [](uint64_t time) { return RecordOf("controllers").number("mod_timestamp", time); };
  const mcstore::KindInventory controllers = inventory_of("controllers", {at(2), at(0xFFFFFFFF), at(0)});

  const std::vector<size_t> order = mcstore::select(controllers, {.sort = "mod_timestamp"}, mcstore::Judge({}));

  EXPECT_THAT(order, ElementsAre(1, 2, 0));
}

TEST(Filter, IsAKeyAndAValue) {
  EXPECT_EQ(Filter::parse("a=b=c")->column, "a");
  EXPECT_EQ(Filter::parse("a=b=c")->value, "b=c");
  EXPECT_EQ(Filter::parse("a=")->value, "");
  EXPECT_FALSE(Filter::parse("a"));
  EXPECT_FALSE(Filter::parse("=b"));
}

}  // namespace
}  // namespace tests
