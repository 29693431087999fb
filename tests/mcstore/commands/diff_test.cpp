#include "mcstore/command_line.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

class Diff : public McstoreTest {
 protected:
  Diff() {
    for (const char *side : {"/a", "/b"}) {
      files.write(std::string(side) + kControllerStore, Bytes().u8(2));
      files.write(std::string(side) + kDriveStore, drive_file(1, {numbered_drive(1)}));
    }
  }

  Outcome diff(const std::string &options = "") {
    return mcstore("diff " + files.real("/a") + ' ' + files.real("/b") + ' ' + options);
  }
};

TEST_F(Diff, SaysNothingWhenNothingChanged) {
  const Outcome outcome = diff();

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
}

TEST_F(Diff, TellsChangesByField) {
  files.write(std::string("/b") + kDriveStore, drive_file(1, {numbered_drive(1, 9)}));

  const Outcome outcome = diff();

  EXPECT_EQ(outcome.exit_code, 1) << outcome.err;
  EXPECT_EQ(outcome.out, "drives c0/e0/s1 changed\n  mod_timestamp: 1 -> 9\n");
}

TEST_F(Diff, TellsProgramsTheSame) {
  files.write(std::string("/b") + kDriveStore, drive_file(1, {numbered_drive(1, 9)}));

  const Outcome outcome = diff("--format ndjson");

  EXPECT_EQ(outcome.exit_code, 1) << outcome.err;
  EXPECT_EQ(outcome.out.substr(0, outcome.out.find(",\"device\"")), R"({"kind":"drives","change":"changed")");
}

TEST_F(Diff, ReportsNoDriveAsGoneThatCannotBeRead) {
  files.remove(std::string("/b") + kDriveStore);
  files.write_text(std::string("/b") + kDriveStore + "/in-the-way", "");

  const Outcome outcome = diff();

  const std::string path = files.real("/b") + kDriveStore;
  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.out, "drives changed\n  status: fine -> unreadable\n  error: none -> cannot read " + path +
                             ": it is not a file\n  devices: 1 -> none\n");
  EXPECT_EQ(outcome.err, "mcstore: " + files.real("/b") + ": drives: cannot read " + path + ": it is not a file\n");
}

TEST_F(Diff, TellsALostStateAndWhyInOneBlock) {
  files.write(std::string("/b") + kControllerStore, Bytes());

  const Outcome outcome = diff();

  const std::string error = files.real("/b") + kControllerStore + " ends within its header";
  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.out,
            "controllers changed\n  status: fine -> damaged\n  error: none -> " + error + "\n  state: ready -> none\n");
}

TEST_F(Diff, DoesNotCompareThePlacesInErrors) {
  for (const char *side : {"/a", "/b"}) files.write(std::string(side) + kDriveStore, Bytes());

  EXPECT_EQ(diff().out, "");
}

TEST_F(Diff, IsNotContentWithAPlaceWithoutAnInventory) {
  files.remove("/b/var");

  const Outcome outcome = diff();

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: " + files.real("/b") + ": there is no inventory in it\n");
}

TEST_F(Diff, TellsTroubleFromADifference) {
  files.write_text("/b/manifest.json", "{");

  EXPECT_EQ(diff().exit_code, 2);
}

}  // namespace
}  // namespace tests
