#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/inventories.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Get : public McstoreTest {
 protected:
  Get() {
    files.write(kControllerStore, controller_file(2, {Controller()}));
    files.write(kDriveStore, drive_file(3, {numbered_drive(1), numbered_drive(2), numbered_drive(10)}));
  }

  void expect_refusal(const std::string &arguments, const std::string &message) {
    const Outcome outcome = mcstore_here("get " + arguments);
    EXPECT_EQ(outcome.exit_code, 2) << arguments;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "mcstore: " + message + "\n");
  }
};

TEST_F(Get, HasALineForEachDevice) {
  const Outcome outcome = mcstore_here("get drives --columns device,health,serial");

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "Physical drives: 3\n"
            "DEVICE    HEALTH SERIAL\n"
            "c0/e0/s1  OK     SERIAL-1\n"
            "c0/e0/s2  OK     SERIAL-2\n"
            "c0/e0/s10 OK     SERIAL-10\n");
}

TEST_F(Get, HasABlockForEachKind) {
  const Outcome outcome = mcstore_here("get all");

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("RAID controllers: 1, subsystem ready\nDEVICE "));
  EXPECT_THAT(outcome.out, HasSubstr("\n\nPhysical drives: 3\nDEVICE "));
  EXPECT_THAT(outcome.out, EndsWith("\n\nVirtual drives: none\nBattery backup units: none\nSAS expanders: none\n"
                                    "NVMe controllers and switches: none\nNVMe drives: none\n"));
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Get, ShowsEveryFieldOfTheDevicesThatAreNamed) {
  const Outcome one = mcstore_here("get drives c0/e0/s2");
  const Outcome two = mcstore_here("get all SERIAL-10 c0");

  EXPECT_EQ(one.exit_code, 0);
  EXPECT_THAT(one.out, StartsWith("Physical drives: 1 of 3\nFIELD "));
  EXPECT_THAT(one.out, AllOf(HasSubstr("\nserial_num                   SERIAL-2\n"), Not(HasSubstr("SERIAL-1"))));
  EXPECT_EQ(two.exit_code, 0);
  EXPECT_THAT(two.out,
              AllOf(HasSubstr(" c0/e0/s10\n"), StartsWith("RAID controllers: 1"), Not(HasSubstr("none\nNVMe"))));
}

TEST_F(Get, SaysWhichDeviceThereIsInstead) {
  const Outcome outcome = mcstore_here("get drives c0/e0/s3 c0/e0/s1");
  const Outcome empty = mcstore_here("get drives ''");

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, HasSubstr("SERIAL-1\n"));
  EXPECT_EQ(outcome.err, "mcstore: no device is called 'c0/e0/s3': there are 3, the nearest: c0/e0/s1, c0/e0/s2\n");
  EXPECT_EQ(empty.exit_code, 3);
}

TEST_F(Get, SortsAndFilters) {
  EXPECT_EQ(mcstore_here("get drives --columns DEVICE --filter serial=serial-2 --no-header").out, "c0/e0/s2\n");
  EXPECT_EQ(mcstore_here("get drives --columns DEVICE --filter fault=false --filter slot_num=10").out,
            "Physical drives: 1 of 3\nDEVICE\nc0/e0/s10\n");
  EXPECT_EQ(mcstore_here("get drives --columns device --sort serial_num --no-header").out,
            "c0/e0/s1\nc0/e0/s2\nc0/e0/s10\n");
  EXPECT_EQ(mcstore_here("get drives --filter fault=true").out, "Physical drives: 0 of 3\n");
}

TEST_F(Get, PassesOverKindsThatHaveNoneOfTheColumns) {
  const Outcome outcome = mcstore_here("get all --columns serial_num");

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("RAID controllers: 1, subsystem ready\n"
                                      "  has none of these columns\n"
                                      "\n"
                                      "Physical drives: 3\n"
                                      "SERIAL\n"
                                      "SERIAL-1\n"));
  EXPECT_EQ(mcstore_here("get all --columns serial_num --no-header").out, "SERIAL-1\nSERIAL-2\nSERIAL-10\n");
}

TEST_F(Get, TakesTheNameOfAFieldBeforeAHeading) {
  EXPECT_EQ(mcstore_here("get drives --columns device --filter status=5 --filter slot_num=2 --no-header").out,
            "c0/e0/s2\n");
  EXPECT_EQ(mcstore_here("get drives --format csv --columns status,STATUS --filter slot_num=2").out,
            "status,status_desc\r\n5,\r\n");
}

TEST_F(Get, ShowsAllColumns) {
  const std::string out = mcstore_here("get controllers --all-columns").out;

  EXPECT_THAT(out, AllOf(HasSubstr(" LIFE_LEFT_IN_DAYS"), Not(HasSubstr("RESERVED"))));
}

TEST_F(Get, RefusesWhatItDoesNotKnow) {
  expect_refusal("drives --columns tempo", "there is no column 'tempo'; the nearest: TEMP");
  expect_refusal("drives --sort serial_nu", "there is no column 'serial_nu'; the nearest: serial_num");
  expect_refusal("all --filter helth=OK", "there is no column 'helth'; the nearest: health");
  expect_refusal("drives --filter health", "--filter: 'health' is not KEY=VALUE");
  expect_refusal("all --format csv", "--format csv: a table holds one kind: choose one instead of 'all'");
  expect_refusal("drives --format xml --columns temp", "--columns: only the formats table and csv have columns");
  expect_refusal("drives --raw-xml",
                 "--raw-xml: only nvme-controllers and nvme-drives are reported in XML: choose one of them");
  for (const char *option : {"--format xml", "--filter health=OK", "--sort health", "--columns temp", "--all-columns"})
    expect_refusal("nvme-drives --raw-xml " + std::string(option),
                   "--raw-xml shows a whole reply as it is: leave out DEVICE, --format, --filter, --sort and columns");
  expect_refusal("nvme-drives S1 --raw-xml",
                 "--raw-xml shows a whole reply as it is: leave out DEVICE, --format, --filter, --sort and columns");
  for (const char *option : {"c0/e0/s1", "--filter health=OK", "--sort health"})
    expect_refusal("drives --format hex " + std::string(option),
                   "--format hex shows a whole reply as it is: leave out DEVICE, --filter and --sort");
  expect_refusal("drives --columns '\x1b[2J'", "there is no column '\\x1b[2J'; the nearest: SIZE, TEMP, TYPE");
}

TEST_F(Get, ExitsWithThreeWhereNothingIs) {
  const StoreDirectory empty;

  const Outcome all = mcstore("get all --root " + empty.real(""));
  const Outcome drives = mcstore("get drives --root " + empty.real(""));

  const std::string advice = "; --from DIR reads a capture, another root, or a directory with store files\n";
  EXPECT_EQ(all.exit_code, 3);
  EXPECT_EQ(all.err, "mcstore: no data in " + empty.real("") + ": it has none of the store files" + advice);
  EXPECT_EQ(drives.exit_code, 3);
  EXPECT_EQ(drives.out, "Physical drives: none\n");
  EXPECT_EQ(drives.err, "mcstore: no data in " + empty.real("") + ": " + empty.real("/var/storphydrive_info") +
                            " does not exist" + advice);
  EXPECT_EQ(mcstore_here("get expanders").exit_code, 3);
}

TEST_F(Get, ShowsWhatADamagedFileHoldsAndFails) {
  files.write(kDriveStore, drive_file(5, {numbered_drive(1)}));

  const Outcome table = mcstore_here("get all");
  const Outcome bare = mcstore_here("get drives --no-header --columns device");

  const std::string error = files.real(kDriveStore) + " announces 5 records and holds 1\n";
  EXPECT_EQ(table.exit_code, 1);
  EXPECT_THAT(table.out, HasSubstr("Physical drives: 1\n  damaged: " + error + "DEVICE "));
  EXPECT_THAT(table.out, HasSubstr("SERIAL-1"));
  EXPECT_EQ(table.err, "mcstore: " + error);
  EXPECT_EQ(bare.exit_code, 1);
  EXPECT_EQ(bare.out, "c0/e0/s1\n");
  EXPECT_EQ(bare.err, "mcstore: " + error);
}

TEST_F(Get, FailsWhereAFileIsUnreadable) {
  files.remove(kDriveStore);
  files.write(std::string(kDriveStore) + "/file", Bytes());

  const Outcome outcome = mcstore_here("get drives");

  EXPECT_EQ(outcome.exit_code, 1);
  const std::string error = "cannot read " + files.real(kDriveStore) + ": it is not a file\n";
  EXPECT_EQ(outcome.out, "Physical drives: unreadable\n  " + error);
  EXPECT_EQ(outcome.err, "mcstore: " + error);
}

TEST_F(Get, TellsSimulationsInEveryFormat) {
  files.write_text("/debug/mctool_storage_debug", "");

  EXPECT_THAT(mcstore_here("get drives").out, HasSubstr("  simulated: the devices are made up"));
  EXPECT_THAT(mcstore_here("get drives --format xml").out, HasSubstr("status=\"simulated\" error=\"the devices"));
  for (const char *format : {"csv", "hex"})
    EXPECT_THAT(mcstore_here(std::string("get drives --format ") + format).err,
                StartsWith("mcstore: drives: simulated: the devices are made up"));
}

TEST_F(Get, ColoursOnRequest) {
  files.write(kDriveStore, drive_file(1, {Drive()}));

  EXPECT_THAT(mcstore_here("get drives --color always").out, HasSubstr("\033[32mOK"));
  EXPECT_THAT(mcstore_here("get drives").out, Not(HasSubstr("\033")));
  EXPECT_EQ(mcstore_here("get drives --color blue").exit_code, 2);
}

}  // namespace
}  // namespace tests
