#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "mcstore/command_line.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Check : public McstoreTest {
 protected:
  Check() { store_controller(0); }

  void store_controller(uint8_t status) {
    files.write(kControllerStore,
                Bytes().u8(2) + Controller().stored().put(104, Bytes().u8(1)).put(106, Bytes().u8(status)));
  }

  Outcome check(const std::string &options = "") { return mcstore_here("check " + options); }
};

TEST_F(Check, SaysThatAllIsWell) {
  const Outcome outcome = check();

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE OK - 1 devices | controllers=1 controllers.critical=0 "
                                      "controllers.warning=0 controllers.unknown=0 controllers.age="));
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Check, ExitsWithTheStateThatMonitoringSystemsKnow) {
  store_controller(1);
  const Outcome critical = check();
  EXPECT_EQ(critical.exit_code, 2);
  EXPECT_THAT(critical.out, StartsWith("STORAGE CRITICAL - controllers c0: does not respond | "));
  EXPECT_THAT(critical.out, HasSubstr("\nCRITICAL controllers c0: does not respond\n"));

  store_controller(3);
  EXPECT_EQ(check().exit_code, 3);

  store_controller(0);
  EXPECT_EQ(check("--warning controllers.rebuild_rate=1:").exit_code, 1);
}

TEST_F(Check, TellsTheWorstInTheFirstLineAndAllBehindIt) {
  files.write(kDriveStore, drive_file(2, {numbered_drive(0), numbered_drive(1)}));

  const Outcome outcome = check("--warning controllers.rebuild_rate=1: --critical drives.slot_num=0");

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE CRITICAL - drives c0/e0/s1: slot_num is 1, limit 0 (and 1 more) |"));
  EXPECT_THAT(outcome.out, HasSubstr("\nWARNING controllers c0: rebuild_rate is 0, limit 1:\n"));
}

TEST_F(Check, PassesOverWhatIsIgnored) {
  store_controller(1);

  EXPECT_EQ(check("--ignore c0").exit_code, 0);
  EXPECT_EQ(check("--ignore c1").exit_code, 2);
}

TEST_F(Check, LooksAtTheKindsThatAreAsked) {
  files.write(kDriveStore, drive_file(1, {numbered_drive(0)}));
  store_controller(1);

  const Outcome outcome = check("--kind drives");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, Not(HasSubstr("controllers=")));
}

TEST_F(Check, MissesWhatIsRequired) {
  const Outcome outcome = check("--require drives");

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - drives: there are no data |"));
  EXPECT_EQ(check("--require controllers").exit_code, 0);
}

TEST_F(Check, BelievesNoOldData) {
  EXPECT_EQ(check().exit_code, 0);
  const Outcome outcome = check("--stale 2d");
  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - controllers: the data are "));
}

TEST_F(Check, KnowsNothingWithoutData) {
  files.remove(kControllerStore);

  const Outcome outcome = check();

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_EQ(outcome.out, "STORAGE UNKNOWN - there are no data\n");
}

TEST_F(Check, DoesNotTakeATruncatedFileForASmallerInventory) {
  files.write(kControllerStore, Bytes().u8(2) + Controller().stored() + Bytes::repeated(10, 0));

  const Outcome outcome = check();

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, HasSubstr("/var/storctlr_info ends within a record: 1 whole ones, and 10 bytes"));
}

TEST_F(Check, WaitsForEachLockOnce) {
  const int writer = open(files.real(kControllerStore).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(writer, LOCK_EX), 0);
  files.write(kDriveStore, drive_file(1, {numbered_drive(0)}));

  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = check("--timeout 3");
  const auto waited = std::chrono::steady_clock::now() - start;
  close(writer);

  EXPECT_LT(waited, std::chrono::seconds(6));
  EXPECT_EQ(outcome.err,
            "mcstore: waiting for the lock on " + files.real(kControllerStore) + ", which another process holds\n");
}

TEST_F(Check, IsNotKeptWaitingByPipes) {
  files.remove(kControllerStore);
  ASSERT_EQ(mkfifo(files.real(kControllerStore).c_str(), 0600), 0);

  const Outcome outcome = check("--timeout 1");

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, HasSubstr("/var/storctlr_info, which is to be locked, is not a file"));
}

TEST_F(Check, IsNotKeptWaitingByWhatThePluginReadsBeside) {
  files.write_text("/etc/product/x", "");
  files.remove("/etc/product");
  ASSERT_EQ(mkfifo(files.real("/etc/product").c_str(), 0600), 0);

  EXPECT_EQ(check().exit_code, 0);
}

TEST_F(Check, DoesNotTakeALinkThatLeadsNowhereForAnAbsentKind) {
  ASSERT_EQ(symlink("/nowhere", files.real(kDriveStore).c_str()), 0);

  const Outcome outcome = check();

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - drives: " + files.real(kDriveStore)));
}

TEST_F(Check, BelievesNoDataFromTheFuture) {
  files.write(kControllerStore, Bytes().u8(2) + Controller().stored().put(104, Bytes().u8(1)), 4102444800);

  const Outcome outcome = check("--stale 1d");

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - controllers: the data are dated "));
}

TEST_F(Check, CountsTheAgeOfACaptureFromWhenItWasTaken) {
  ASSERT_EQ(mcstore("capture " + files.real("/taken") + " --from " + files.real("")).exit_code, 0);
  ASSERT_EQ(run("cp -r " + files.real("/taken") + " " + files.real("/copied")).exit_code, 0);

  const Outcome outcome = mcstore("check --stale 1d --from " + files.real("/copied"));

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - controllers: the data are "));
}

TEST_F(Check, GivesUpOnALockThatIsHeld) {
  const int writer = open(files.real(kControllerStore).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(writer, LOCK_EX), 0);

  const Outcome outcome = check("--timeout 0.1");
  close(writer);

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, HasSubstr("stayed locked by another process for 0.1 s"));
}

TEST_F(Check, LetsNoTextOfADeviceBreakItsLine) {
  files.write(kControllerStore,
              Bytes().u8(2) + Controller().stored().put(104, Bytes().u8(1)).put_text(1223, "a|b\n\x1b["));

  const Outcome outcome = check();

  EXPECT_THAT(outcome.out, StartsWith("STORAGE WARNING - controllers c0: error: a\\x7cb\\x0a\\x1b[ | controllers=1 "));
}

TEST_F(Check, TakesWhateverGoesWrongForUnknown) {
  for (const char *arguments : {"check --stale soon", "check --nonsense", "check --warning x", "check --from /nowhere",
                                "check --kind toasters", "check --plugin /dev/null", "check extra"}) {
    const Outcome outcome = mcstore(arguments);
    EXPECT_EQ(outcome.exit_code, 3) << arguments;
    EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - ")) << arguments;
    EXPECT_EQ(outcome.err, "") << arguments;
  }
  const Outcome outcome = run(mcstore_command() + " check --plugin " + files.real("/var/storctlr_info"));
  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_THAT(outcome.out, StartsWith("STORAGE UNKNOWN - "));
}

}  // namespace
}  // namespace tests
