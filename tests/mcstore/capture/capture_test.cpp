#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "mcstore/background.h"
#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "nvme/nvme_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

class Capture : public McstoreTest {
 protected:
  Capture() {
    files.write(std::string("/r") + kControllerStore, Bytes().u8(2), 1234);
    files.write(std::string("/r") + kDriveStore, drive_file(1, {numbered_drive(1)}), 5678);
  }

  std::string arguments() const { return "capture " + files.real("/c") + " --from " + files.real("/r") + ' '; }
  Outcome capture() { return mcstore(arguments()); }

  // The names of all that is in the test's directory.
  std::vector<std::string> left() const {
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(files.real("/")))
      names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

  void expect_failure(const Outcome &outcome, const std::string &message) {
    EXPECT_EQ(outcome.exit_code, 1);
    EXPECT_EQ(outcome.err, "mcstore: " + message + "\n");
    EXPECT_EQ(left(), std::vector<std::string>{"r"});
  }
};

TEST_F(Capture, HasTheSameBytesAndTimes) {
  files.write_text("/r/var/log/TFM_FRU.bin", "module");
  files.write_text("/r/etc/product", "kestrano");

  const Outcome outcome = capture();

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  for (const char *path : {kControllerStore, kDriveStore, "/var/log/TFM_FRU.bin", "/etc/product"}) {
    EXPECT_EQ(files.read(std::string("/c") + path), files.read(std::string("/r") + path)) << path;
    EXPECT_EQ(files.modified(std::string("/c") + path), files.modified(std::string("/r") + path)) << path;
  }
  EXPECT_EQ(left(), (std::vector<std::string>{"c", "r"}));
}

TEST_F(Capture, HasAManifest) {
  EXPECT_EQ(capture().exit_code, 0);

  const ShownJson manifest(files.read("/c/manifest.json"));
  EXPECT_EQ(manifest.keys(), (std::vector<std::string>{"format", "host", "tool", "time", "files"}));
  EXPECT_EQ(manifest["format"], 1);
  EXPECT_EQ(manifest["tool"]["name"], "mcstore");
  ASSERT_EQ(manifest["files"].size(), 2u);
  EXPECT_EQ(manifest["files"][0].text(),
            R"({"path":"/var/storctlr_info","size":1,"modified":"1970-01-01T00:20:34Z",)"
            R"("sha256":"dbc1b4c900ffe48d575b5da5c638040125f65db0fe3e24494b76ea986457d986"})");
}

TEST_F(Capture, IsReadLikeTheOriginal) {
  capture();

  const Outcome outcome = mcstore("diff " + files.real("/r") + ' ' + files.real("/c/"));

  EXPECT_EQ(outcome.exit_code, 0) << outcome.out << outcome.err;
}

TEST_F(Capture, IsRefusedWhereSomethingIs) {
  files.write_text("/c", "in the way");

  const Outcome outcome = capture();

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: DIR: " + files.real("/c") + " exists already\n");
  EXPECT_EQ(files.read("/c"), "in the way");
}

TEST_F(Capture, IsRefusedWithoutAName) {
  const Outcome outcome = mcstore("capture '' --from " + files.real("/r"));

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: DIR: the directory to make needs a name\n");
}

TEST_F(Capture, TellsWhatCannotBeReached) {
  files.remove("/r/var");
  symlink("var", files.real("/r/var").c_str());  // a link to itself

  expect_failure(capture(),
                 "cannot read " + files.real("/r") + kControllerStore + ": Too many levels of symbolic links");
}

TEST_F(Capture, TellsThatThereIsNothing) {
  files.remove("/r");
  files.write_text("/r/etc/product", "kestrano");

  const Outcome outcome = capture();

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_EQ(outcome.err, "mcstore: there is no store file in " + files.real("/r") + "\n");
  EXPECT_FALSE(files.exists("/c"));
}

TEST_F(Capture, IsNotThereWhenAFileCannotBeRead) {
  files.write_text(std::string("/r") + kNvmeControllerStore + "/in-the-way", "");

  expect_failure(capture(), files.real("/r") + kNvmeControllerStore + ", which is to be locked, is not a file");
}

TEST_F(Capture, IsNotThereWithoutTheFileToLock) {
  files.remove(std::string("/r") + kControllerStore);

  const std::string root = files.real("/r");
  expect_failure(capture(), root + kControllerStore + " does not exist: without it " + root + kDriveStore +
                                " cannot be locked, and is not copied");
}

TEST_F(Capture, IsNotThereWhenTheDiskIsFull) {
  files.resize(std::string("/r") + kDriveStore, 1 << 20);

  const Outcome outcome = run("trap '' XFSZ; ulimit -f 8; " + mcstore_command() + ' ' + arguments());

  expect_failure(outcome, "cannot write " + files.real("/c") + kDriveStore + ": File too large");
}

TEST_F(Capture, NeedsADirectoryToBeIn) {
  const Outcome outcome = mcstore("capture " + files.real("/no/c") + " --from " + files.real("/r"));

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_TRUE(outcome.err.starts_with("mcstore: cannot make " + files.real("/no/c"))) << outcome.err;
}

TEST_F(Capture, WaitsForTheCollector) {
  const int collector = open(files.real(std::string("/r") + kControllerStore).c_str(), O_RDONLY | O_CLOEXEC);
  flock(collector, LOCK_EX);
  Background waiting(arguments());
  EXPECT_EQ(waiting.line(std::chrono::milliseconds(500)), "");
  EXPECT_FALSE(files.exists("/c"));

  const Bytes written = drive_file(1, {numbered_drive(1, 9)});
  files.write(std::string("/r") + kDriveStore, written);
  close(collector);

  EXPECT_EQ(waiting.exit_code(), 0);
  EXPECT_EQ(files.read(std::string("/c") + kDriveStore), files.read(std::string("/r") + kDriveStore));
  EXPECT_EQ(left(), (std::vector<std::string>{"c", "r"}));
}

}  // namespace
}  // namespace tests
