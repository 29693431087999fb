#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "mcstore/background.h"
#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class Watch : public McstoreTest {
 protected:
  Watch() {
    files.write(kControllerStore, Bytes().u8(2));
    write_stamp(1);
  }

  void write_stamp(uint32_t stamp) { files.write(kDriveStore, drive_file(1, {numbered_drive(1, stamp)})); }

  // Without --interval only a notice of the system wakes it in the time of a test.
  std::string drives(const std::string &options) const {
    return "watch drives --from " + files.real("") + ' ' + options;
  }

  static std::string without_time(const std::string &line) { return line.substr(line.find(' ') + 1); }
};

constexpr char kRarely[] = "--interval 3600 ";

TEST_F(Watch, BeginsWithASummary) {
  const Outcome outcome = mcstore("watch --for 0.05 --from " + files.real(""));

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(without_time(outcome.out), "watching 0 controllers, 1 drives\n");
}

TEST_F(Watch, TellsOfEachWriteOfASecond) {
  Background watch(drives(kRarely));
  EXPECT_EQ(without_time(watch.line()), "watching 1 drives");

  const Clock::time_point start = Clock::now();
  write_stamp(2);
  const std::string first = watch.line();
  write_stamp(3);
  const std::string second = watch.line();
  const auto taken = Clock::now() - start;

  EXPECT_EQ(without_time(first), "drives c0/e0/s1 changed: mod_timestamp 1 -> 2");
  EXPECT_EQ(without_time(second), "drives c0/e0/s1 changed: mod_timestamp 2 -> 3");
  EXPECT_LT(taken, 20s);  // half a second each, on a machine with nothing else to do
}

TEST_F(Watch, TellsOfOneWriteOnce) {
  Background watch(drives(kRarely));
  watch.line();

  write_stamp(2);
  watch.line();

  EXPECT_EQ(watch.line(500ms), "");
}

TEST_F(Watch, IsSilentWhenNothingHappens) {
  const Outcome outcome = mcstore(drives("--interval 0.05 --for 0.5 --format ndjson"));

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(ShownJson(outcome.out)["change"], "watching");
}

TEST_F(Watch, LooksAgainAfterTheInterval) {
  files.write_text("/elsewhere/file", "");
  files.remove("/var");
  symlink("elsewhere", files.real("/var").c_str());
  Background watch(drives("--interval 0.05"));
  EXPECT_EQ(without_time(watch.line()), "watching for store files: there are none yet");

  files.remove("/var");
  files.write(kControllerStore, Bytes().u8(2));
  write_stamp(1);

  EXPECT_EQ(without_time(watch.line()), "drives changed: status absent -> fine, devices none -> 1");
}

TEST_F(Watch, TellsOnceThatDrivesCannotBeRead) {
  Background watch(drives("--interval 0.05"));
  watch.line();

  rename(files.real(kDriveStore).c_str(), files.real("/kept").c_str());
  EXPECT_EQ(without_time(watch.line()), "drives changed: status fine -> absent, devices 1 -> none");
  EXPECT_EQ(watch.line(300ms), "");

  rename(files.real("/kept").c_str(), files.real(kDriveStore).c_str());
  EXPECT_EQ(without_time(watch.line()), "drives changed: status absent -> fine, devices none -> 1");
  EXPECT_EQ(watch.line(300ms), "");
}

TEST_F(Watch, RemembersDevicesWhileTheyCannotBeSeen) {
  Background watch(drives("--interval 0.05"));
  watch.line();

  files.remove(kDriveStore);
  watch.line();
  rename(files.real(kControllerStore).c_str(), files.real("/kept").c_str());  // nothing is read without its lock
  write_stamp(2);
  rename(files.real("/kept").c_str(), files.real(kControllerStore).c_str());

  std::string line;
  do line = without_time(watch.line());
  while (line.starts_with("drives changed: status"));
  EXPECT_EQ(line, "drives c0/e0/s1 changed: mod_timestamp 1 -> 2");
}

TEST_F(Watch, TellsWhatWasReplacedWhileTheFileWasDamaged) {
  files.write(kDriveStore, drive_file(2, {numbered_drive(1), numbered_drive(2)}));
  Background watch(drives(kRarely));
  watch.line();
  const std::string announces = files.real(kDriveStore) + " announces 2 records and holds ";

  files.write(kDriveStore, drive_file(2, {numbered_drive(1, 7)}));
  EXPECT_EQ(without_time(watch.line()),
            "drives changed: status fine -> damaged, error none -> " + announces + "1, devices 2 -> 1");
  EXPECT_EQ(without_time(watch.line()), "drives c0/e0/s1 changed: mod_timestamp 1 -> 7");
  files.write(kDriveStore, drive_file(2, {}));
  EXPECT_EQ(without_time(watch.line()),
            "drives changed: error " + announces + "1 -> " + announces + "0, devices 1 -> 0");
  files.write(kDriveStore, drive_file(2, {numbered_drive(1, 7), numbered_drive(3)}));
  EXPECT_EQ(without_time(watch.line()),
            "drives changed: status damaged -> fine, error " + announces + "0 -> none, devices 0 -> 2");
  EXPECT_EQ(without_time(watch.line()), "drives c0/e0/s2 went: (empty), serial_num SERIAL-2");
  EXPECT_EQ(without_time(watch.line()), "drives c0/e0/s3 came: (empty), serial_num SERIAL-3");
}

TEST_F(Watch, EndsAfterSoManyEvents) {
  Background watch(drives(std::string(kRarely) + "--count 2"));
  watch.line();

  files.write(kDriveStore, drive_file(3, {numbered_drive(2), numbered_drive(3), numbered_drive(4)}));

  EXPECT_EQ(without_time(watch.line()), "drives c0/e0/s1 went: (empty), serial_num SERIAL-1");
  EXPECT_EQ(without_time(watch.line()), "drives c0/e0/s2 came: (empty), serial_num SERIAL-2");
  EXPECT_EQ(watch.line(), "");
  EXPECT_EQ(watch.exit_code(), 0);
}

TEST_F(Watch, EndsWhenItIsInterrupted) {
  for (const int signal : {SIGINT, SIGTERM}) {
    Background watch(drives(kRarely));
    watch.line();

    watch.send(signal);

    EXPECT_EQ(watch.exit_code(), 0);
  }
}

TEST_F(Watch, EndsWhenItIsInterruptedWhileItWaitsForALock) {
  Background watch(drives(kRarely));
  watch.line();
  const int collector = open(files.real(kControllerStore).c_str(), O_RDONLY | O_CLOEXEC);
  flock(collector, LOCK_EX);
  write_stamp(2);
  EXPECT_EQ(watch.line(300ms), "");

  watch.send(SIGINT);

  EXPECT_EQ(watch.exit_code(), 0);
  close(collector);
}

TEST_F(Watch, EndsWhenNobodyReads) {
  Background watch(drives(kRarely));
  watch.line();

  watch.close_output();

  EXPECT_EQ(watch.exit_code(), 0);
}

TEST_F(Watch, EndsQuietlyWhenItCannotWriteToAPipe) {
  const std::string watch = mcstore_command() + ' ' + drives(kRarely);

  const Outcome outcome = run("trap '' PIPE; { sleep 0.3; " + watch + "; echo $? >&2; } | true");

  EXPECT_EQ(outcome.err, "0\n");
}

TEST_F(Watch, RefusesAnIntervalThatIsNone) {
  const Outcome outcome = mcstore(drives("--interval 0.04"));

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: --interval: '0.04' is not a number from 0.05 to 86400\n");
}

}  // namespace
}  // namespace tests
