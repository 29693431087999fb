#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/kind.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::Not;

class AllKinds : public McstoreTest {
 protected:
  AllKinds() {
    files.write(kControllerStore, Bytes().u8(2) + Controller().stored());
    files.write(kDriveStore, drive_file(1, {numbered_drive(0)}));
  }
};

TEST_F(AllKinds, AreShownOneAfterTheOther) {
  const Outcome outcome = mcstore_here("get all");

  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  size_t at = 0;
  for (const mcstore::Kind &kind : mcstore::kinds()) {
    at = ("\n" + outcome.out).find("\n" + std::string(kind.title) + ": ", at);
    ASSERT_NE(at, outcome.out.npos) << kind.name;
  }
  EXPECT_THAT(outcome.out, HasSubstr("RAID controllers: 1, subsystem state 2\n"));
  EXPECT_THAT(outcome.out, HasSubstr("Physical drives: 1\n"));
  EXPECT_THAT(outcome.out, HasSubstr("SAS expanders: no data\n"));
}

TEST_F(AllKinds, AreOneJsonText) {
  const ShownJson json(mcstore_here("get all --format json").out);

  EXPECT_EQ(json["format"], 1);
  ASSERT_EQ(json["inventory"].size(), mcstore::kinds().size());
  EXPECT_EQ(json["inventory"][0]["kind"], "controllers");
  EXPECT_EQ(json["inventory"][0]["records"][0]["controller"], "SLOT-0");
  EXPECT_EQ(json["inventory"][1]["records"].size(), 1u);
  const auto expanders = static_cast<size_t>(&mcstore::kind_named("expanders") - mcstore::kinds().data());
  EXPECT_EQ(json["inventory"][expanders], ShownJson(R"({"kind": "expanders", "status": -37})"));
}

TEST_F(AllKinds, HaveNoXmlInCommon) {
  const Outcome outcome = mcstore_here("get all --format xml");

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: --format: not every kind is reported in XML\n");
}

TEST_F(AllKinds, MayBeWithoutData) {
  files.remove(kDriveStore);
  files.write("/var/storphydrive_info/not-a-file", Bytes());

  const Outcome outcome = mcstore_here("get all");

  EXPECT_EQ(outcome.exit_code, 0);  // a directory can be opened, but has no header: no data
  EXPECT_THAT(outcome.out, HasSubstr("Physical drives: no data\n"));
}

TEST_F(AllKinds, AreWatchedByDefault) {
  const Outcome outcome = mcstore_here("watch --interval 0 --count 2");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(outcome.out,
            "call 1, controllers: 1 new\n  new       SLOT-0 (index 0, serial_number SERIAL-0)\n"
            "call 1, drives: 1 new\n  new       SERIAL-0 (controller_index 0, slot_num 0)\n"
            "call 2: nothing changed\n");
  EXPECT_THAT(outcome.err, Not(HasSubstr("mcstore:")));
}

TEST_F(AllKinds, EndTheirWatchWhenItCannotBeWritten) {
  const Outcome outcome = mcstore_here("watch --interval 0 --count 1 >/dev/full");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("mcstore: cannot write to standard output: No space left on device\n"));
}

}  // namespace
}  // namespace tests
