#include "mcstore/watch.h"

#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

// The reports on a sequence of replies.
class Watch : public testing::Test {
 protected:
  std::string report(const std::vector<Bytes> &records) {
    Bytes reply = controller_header(2, static_cast<uint8_t>(records.size()));
    for (const Bytes &record : records) reply += record;
    return watcher_.report(parse_reply(kind_, std::string(reply.data(), reply.data() + reply.size())));
  }

 private:
  const mcstore::Kind &kind_ = mcstore::kind_named("controllers");
  mcstore::Watcher watcher_{kind_};
};

TEST_F(Watch, TellsNewFromModified) {
  const Controller controller{.index = 1, .name = "SLOT-1", .serial = "SN1", .stamp = 5};
  const Controller later{.index = 1, .name = "SLOT-1", .serial = "SN1", .stamp = 6};

  EXPECT_EQ(report({controller.reported()}), "1 new\n  new       SLOT-1 (index 1, serial_number SN1)\n");
  EXPECT_EQ(report({later.reported()}),
            "1 modified\n  modified  SLOT-1 (index 1, serial_number SN1)\n              mod_timestamp: 5 -> 6\n");
}

TEST_F(Watch, ReportsAGoneDeviceAndForgetsIt) {
  const Controller controller{.name = "SLOT-0", .serial = "SN0"};
  report({controller.reported()});

  EXPECT_EQ(report({gone(controller, Bytes::repeated(kControllerSize, 0))}),
            "1 gone\n  gone      SLOT-0 (index 0, serial_number SN0)\n");
  EXPECT_EQ(report({controller.reported()}), "1 new\n  new       SLOT-0 (index 0, serial_number SN0)\n");
}

TEST_F(Watch, TellsDevicesApartByTheirWholeIdentity) {
  const Controller first{.index = 0, .serial = "SN"};
  const Controller second{.index = 1, .serial = "SN"};
  const Controller third{.index = 1, .serial = "SN2"};

  EXPECT_THAT(report({first.reported(), second.reported(), third.reported()}), testing::StartsWith("3 new\n"));
}

TEST_F(Watch, SaysWhenATextIsEmptied) {
  Bytes record = Controller{.serial = "SN"}.reported();
  report({record.put_text(235, "ACME")});

  EXPECT_THAT(report({record.put(235, Bytes::repeated(20, 0))}), testing::HasSubstr("vendor: ACME -> (empty)\n"));
}

TEST_F(Watch, TellsADeviceThatIsReportedWithoutNews) {
  report({Controller().reported()});

  EXPECT_EQ(report({Controller().reported()}), "1 repeated\n  repeated  SLOT-0 (index 0, serial_number SERIAL-0)\n");
}

TEST_F(Watch, ReportsNothingForAnEmptyReply) { EXPECT_EQ(report({}), "nothing changed\n"); }

class WatchCommand : public McstoreTest {};

TEST_F(WatchCommand, KeepsOneProcessAcrossCalls) {
  files.write(kControllerStore, Bytes().u8(2) + Controller().stored());

  const Outcome outcome = mcstore_here("watch controllers --interval 0 --count 2");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(outcome.out,
            "call 1: 1 new\n  new       SLOT-0 (index 0, serial_number SERIAL-0)\ncall 2: nothing changed\n");
}

TEST_F(WatchCommand, GoesOnAfterAFailureAndExitsWithOne) {
  const Outcome outcome = mcstore_here("watch controllers --interval 0 --count 2");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(
      outcome.err,
      "mcstore: call 1: mc_delta_store_ctrls returned -37: no data: a store file is missing, or its header cannot be "
      "read\n"
      "mcstore: call 2: mc_delta_store_ctrls returned -37: no data: a store file is missing, or its header cannot be "
      "read\n");
}

}  // namespace
}  // namespace tests
