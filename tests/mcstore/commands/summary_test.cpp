#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/inventories.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Summary : public McstoreTest {
 protected:
  void store(const std::string &kind, const std::vector<RecordOf> &records) {
    files.write(std::string(mcstore::kind_named(kind).store_path), store_of(mcstore::kind_named(kind), records));
  }

  Outcome summary(const std::string &options = "") { return mcstore_here("summary " + options); }
};

RecordOf good_controller() { return record_of("controllers", {{"is_supported", 1}, {"controller", "SLOT-0"}}); }

TEST_F(Summary, SaysThatAllIsWell) {
  store("controllers", {good_controller()});
  store("bbus", {record_of("bbus", {{"temperature", 25}})});

  const Outcome outcome = summary("--ignore c7");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out,
              StartsWith("OK: 2 devices\n\nKIND        DEVICES OK WARNING CRITICAL UNKNOWN CAPACITY TEMP "));
  EXPECT_THAT(outcome.out, HasSubstr("\ncontrollers       1  1       -        -       -        -    - "));
  EXPECT_THAT(outcome.out, HasSubstr("\nbbus              1  1       -        -       -        - 25 C "));
  EXPECT_THAT(outcome.out,
              HasSubstr("\nNothing of: drives, virtual-drives, expanders, nvme-controllers, nvme-drives\n"));
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Summary, PutsWhatNeedsAttentionFirst) {
  store("controllers", {good_controller()});
  store("virtual-drives", {record_of("virtual-drives", {{"controller_index", 1}, {"target_id", 2}, {"status", 3}})});
  store("bbus", {record_of("bbus", {{"voltage_low", 1}, {"temp_high", 1}})});

  const Outcome outcome = summary();

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, StartsWith("CRITICAL: 2 of 3 devices need attention\n\n"
                                      "HEALTH   DEVICE  PLACE        REASON\n"
                                      "CRITICAL vd c1/2 controller 1 is degraded\n"
                                      "WARNING  bbu c0  controller 0 voltage is low, temperature is high\n\n"));
}

TEST_F(Summary, FitsOnAScreenWhateverIsWrong) {
  store("controllers", {good_controller()});
  store("bbus", std::vector<RecordOf>(40, record_of("bbus", {{"voltage_low", 1}})));

  const std::string out = summary().out;

  EXPECT_LE(std::count(out.begin(), out.end(), '\n'), 24);
  EXPECT_THAT(out, HasSubstr("\n... and 28 more: mcstore get all --filter health=...\n"));
}

TEST_F(Summary, AddsUpWhatDrivesHold) {
  const auto drive = [](int64_t size, int64_t temperature) {
    return record_of("drives", {{"online", 1}, {"raw_size", size}, {"temp_valid", 1}, {"temperature", temperature}});
  };
  store("controllers", {good_controller()});
  store("drives", {drive(int64_t{1} << 40, 20), drive(int64_t{1} << 40, 31)});

  EXPECT_THAT(summary().out, HasSubstr(" 2.0 TiB 20-31 C "));
}

TEST_F(Summary, TellsOfDamagedData) {
  store("controllers", {good_controller()});
  files.write("/var/storphydrive_info", Bytes::hex("02 00 00 00"));

  const Outcome outcome = summary();

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.out,
              StartsWith("UNKNOWN: 0 of 1 devices need attention, and 1 of the data cannot be relied on\n"));
  EXPECT_THAT(outcome.out, HasSubstr("UNKNOWN drives       " + files.real("/var/storphydrive_info") +
                                     " announces 2 records and holds 0\n"));
}

TEST_F(Summary, SaysWhereThereIsNothing) {
  const Outcome outcome = summary();

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("UNKNOWN: there are no data\n"));
  EXPECT_EQ(outcome.err,
            "mcstore: no data in " + files.real("") +
                ": it has none of the store files; --from DIR reads a capture, another root, or a directory "
                "with store files\n");
}

TEST_F(Summary, HasColourWhenItIsWanted) {
  store("controllers", {good_controller()});

  EXPECT_THAT(summary("--color always").out, StartsWith("\x1b["));
  EXPECT_THAT(summary().out, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace tests
