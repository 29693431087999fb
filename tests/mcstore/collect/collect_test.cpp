#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "mcstore/command_line.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

constexpr char kStore[] = "/var/storctlr_info";
constexpr char kInventory[] =
    R"({"format": 2, "kinds": [{"kind": "controllers", "state": 2, "devices": [{"fields": {"index": 7}}]}]})";
constexpr char kOnlyState[] = R"({"format": 2, "kinds": [{"kind": "controllers", "state": 1}]})";

class Collect : public McstoreTest {
 protected:
  Outcome collect(const std::string &json, const std::string &options = "") {
    files.write_text("/inventory.json", json);
    return mcstore_here("collect " + files.real("/inventory.json") + " " + options);
  }

  struct stat store_stat() const {
    struct stat result = {};
    EXPECT_EQ(stat(files.real(kStore).c_str(), &result), 0);
    return result;
  }
};

TEST_F(Collect, WritesTheStoreFile) {
  const Outcome outcome = collect(kInventory);

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(files.read(kStore), std::string("\x02\x07") + std::string(kControllerSize - 1, '\0'));
}

TEST_F(Collect, SetsTheModificationTime) {
  EXPECT_EQ(collect(kInventory, "--at 2100-01-01T00:00:00Z").exit_code, 0);

  EXPECT_EQ(store_stat().st_mtime, 4102444800);
}

TEST_F(Collect, ReplacesContentInPlace) {
  collect(kInventory);
  const ino_t before = store_stat().st_ino;

  EXPECT_EQ(collect(kOnlyState).exit_code, 0);

  EXPECT_EQ(store_stat().st_ino, before);
  EXPECT_EQ(files.read(kStore), "\x01");
}

TEST_F(Collect, WritesNothingWhenTheInventoryIsWrong) {
  collect(kInventory, "--at 1000");

  const Outcome outcome =
      collect(R"({"format": 2, "kinds": [{"kind": "controllers", "devices": [{"fields": {"index": 300}}]}]})");

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: " + files.real("/inventory.json") +
                             ": controllers.devices[0].fields.index: 300 does not fit: from 0 to 255 does\n");
  EXPECT_EQ(files.read(kStore).size(), 1 + kControllerSize);
  EXPECT_EQ(store_stat().st_mtime, 1000);
}

TEST_F(Collect, WritesNothingWhenTheTimeIsWrong) {
  const Outcome outcome = collect(kInventory, "--at noon");

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: --at: 'noon' is neither seconds since 1970 nor an ISO 8601 time\n");
  EXPECT_FALSE(files.exists(kStore));
}

TEST_F(Collect, RefusesATimeThatNotEveryFileSystemStores) {
  for (const std::string time : {"-1", "4294967296", "1969-12-31"}) {
    const Outcome outcome = collect(kInventory, "--at=" + time);

    EXPECT_EQ(outcome.exit_code, 2);
    EXPECT_EQ(outcome.err, "mcstore: --at: '" + time +
                               "' is not a time of files: these are from 0 to 4294967295 seconds since 1970\n");
  }
  EXPECT_EQ(collect(kInventory, "--at 0").exit_code, 0);
  EXPECT_EQ(collect(kInventory, "--at 4294967295").exit_code, 0);
}

TEST_F(Collect, TellsWhatItCannotWrite) {
  files.write_text("/var/storctlr_info/in-the-way", "");

  const Outcome outcome = collect(kInventory);

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.err, "mcstore: cannot open " + files.real(kStore) + ": Is a directory\n");
}

TEST_F(Collect, TellsWhatDirectoryItCannotMake) {
  files.write_text("/inventory.json", kInventory);
  files.write_text("/afile", "in the way");

  const Outcome outcome = mcstore("collect " + files.real("/inventory.json") + " --root " + files.real("/afile"));

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.err, "mcstore: cannot make " + files.real("/afile/var") + ": Not a directory\n");
}

TEST_F(Collect, LeavesNoDamagedStoreBehindItsLock) {
  EXPECT_EQ(collect(R"({"format": 2, "kinds": [{"kind": "drives"}, {"kind": "nvme-drives"}]})").exit_code, 0);

  for (const char *kind : {"controllers", "drives", "nvme-controllers", "nvme-drives"}) {
    const Outcome shown = mcstore_here(std::string("get ") + kind);
    EXPECT_EQ(shown.err.find("damaged"), std::string::npos) << shown.err;
    EXPECT_NE(shown.exit_code, 1) << kind << shown.err;
  }
}

TEST_F(Collect, LeavesTheStoreThatItLocksAsItIs) {
  collect(kInventory, "--at 1000");

  EXPECT_EQ(collect(R"({"format": 2, "kinds": [{"kind": "drives"}]})").exit_code, 0);

  EXPECT_EQ(files.read(kStore).size(), 1 + kControllerSize);
  EXPECT_EQ(store_stat().st_mtime, 1000);
}

TEST_F(Collect, TellsWhichKindsItDoesNotWrite) {
  const Outcome outcome = collect(R"({"format": 2, "kinds": [{"kind": "controllers", "state": 2},
      {"kind": "drives", "status": "damaged", "error": "an \u001b[31m end", "devices": [{}]}]})");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.err, "mcstore: drives: not written, since they are damaged: an \\x1b[31m end\n");
  EXPECT_EQ(files.read(kStore), "\x02");
  EXPECT_FALSE(files.exists("/var/storphydrive_info"));
}

TEST_F(Collect, TellsThatThereIsNothingToWrite) {
  for (const char *json : {R"({"format": 2})", R"({"format": 2, "kinds": []})",
                           R"({"format": 2, "kinds": [{"kind": "drives", "status": "absent"}]})"}) {
    const Outcome outcome = collect(json);

    EXPECT_EQ(outcome.exit_code, 3) << json;
    EXPECT_EQ(outcome.err, "mcstore: the inventory has no kinds that are there: nothing to write\n");
  }
}

TEST_F(Collect, ReadsStandardInput) {
  const Outcome outcome = run(std::string("printf '%s' '") + kInventory + "' | " + mcstore_command() +
                              " collect - --root " + files.real(""));

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(files.read(kStore).size(), 1 + kControllerSize);
}

TEST_F(Collect, WritesNothingWhenItsInputIsCut) {
  const Outcome outcome = run(std::string("printf '%s' '") + kInventory + "' | head -c 50 | " + mcstore_command() +
                              " collect - --root " + files.real(""));

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: standard input: line 1, column 51: the text ends before its JSON does\n");
  EXPECT_FALSE(files.exists(kStore));
}

TEST_F(Collect, TellsWhatItCannotRead) {
  const Outcome outcome = mcstore_here("collect " + files.real("/nowhere"));

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: cannot read " + files.real("/nowhere") + ": No such file or directory\n");
}

TEST_F(Collect, WaitsForReaders) {
  collect(kOnlyState);
  files.write_text("/inventory.json", kInventory);
  const int reader = open(files.real(kStore).c_str(), O_RDONLY | O_CLOEXEC);
  flock(reader, LOCK_SH);

  FILE *writer =
      popen((MCSTORE_COMMAND " collect " + files.real("/inventory.json") + " --root " + files.real("")).c_str(), "r");
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  const std::string while_locked = files.read(kStore);
  close(reader);

  EXPECT_EQ(pclose(writer), 0);
  EXPECT_EQ(while_locked, "\x01");
  EXPECT_EQ(files.read(kStore).size(), 1 + kControllerSize);
}

}  // namespace
}  // namespace tests
