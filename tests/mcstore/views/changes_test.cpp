#include "mcstore/views/changes.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "mcstore/inventory/looks.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using mcstore::ChangeFormat;
using mcstore::KindInventory;
using mcstore::KindStatus;

constexpr struct timespec kMorning = {.tv_sec = 1772445600, .tv_nsec = 5};  // 2026-03-02T10:00:00Z

class ShownChanges : public testing::Test {
 protected:
  ShownChanges() {
    setenv("TZ", "UTC-3", 1);
    tzset();
  }
  ~ShownChanges() override {
    unsetenv("TZ");
    tzset();
  }

  static KindInventory drives(const std::vector<Drive> &all) {
    std::vector<Bytes> records;
    for (const Drive &drive : all)
      records.push_back(drive.stored().put_text(offset_of("drives", "product_id"), "MODEL"));
    return look_at("drives", records);
  }

  static std::string all(const std::vector<mcstore::Change> &changes, ChangeFormat format) {
    std::string text;
    for (const auto &change : changes) text += shown_change(change, format);
    return text;
  }
};

TEST_F(ShownChanges, AreBlocksForPeople) {
  const KindInventory before = drives({numbered_drive(1), numbered_drive(2)});
  const KindInventory after = drives({{.slot = 1, .serial = "SERIAL-1", .stamp = 9, .status = 6}, numbered_drive(3)});

  EXPECT_EQ(all(data_changes(before, after), ChangeFormat::kText),
            "drives c0/e0/s1 changed\n"
            "  status: 5 -> 6\n"
            "  mod_timestamp: 1 -> 9\n"
            "drives c0/e0/s2 went: MODEL, serial_num SERIAL-2\n"
            "drives c0/e0/s3 came: MODEL, serial_num SERIAL-3\n");
}

TEST_F(ShownChanges, AreLinesForPrograms) {
  const KindInventory before = drives({numbered_drive(1), numbered_drive(2)});
  const KindInventory after = drives({numbered_drive(1, 9)});

  EXPECT_EQ(all(data_changes(before, after), ChangeFormat::kNdjson),
            R"({"kind":"drives","change":"changed","device":"c0/e0/s1","model":"MODEL",)"
            R"("identity":{"controller_index":"0","slot_num":"1","serial_num":"SERIAL-1"},)"
            R"("fields":[{"name":"mod_timestamp","before":"1","after":"9","before_number":1,"after_number":9}]})"
            "\n"
            R"({"kind":"drives","change":"went","device":"c0/e0/s2","model":"MODEL",)"
            R"("identity":{"controller_index":"0","slot_num":"2","serial_num":"SERIAL-2"},"fields":[]})"
            "\n");
}

TEST_F(ShownChanges, TellOfAKindWithoutADevice) {
  const auto changes = status_changes(drives({numbered_drive(1)}), drives({numbered_drive(1)}),
                                      look_in_vain("drives", KindStatus::kUnreadable, "it is \"locked\""));

  EXPECT_EQ(all(changes, ChangeFormat::kText),
            "drives changed\n"
            "  status: fine -> unreadable\n"
            "  error: none -> it is \"locked\"\n"
            "  devices: 1 -> none\n");
  EXPECT_EQ(all(changes, ChangeFormat::kNdjson),
            R"({"kind":"drives","change":"status","fields":[{"name":"status","before":"fine","after":"unreadable"},)"
            R"({"name":"error","before":"none","after":"it is \"locked\""},)"
            R"({"name":"devices","before":"1","after":"none","before_number":1,"after_number":null}]})"
            "\n");
}

TEST_F(ShownChanges, AreEventsWithTheTime) {
  const KindInventory before = drives({numbered_drive(1)});
  const KindInventory after = drives({{.slot = 1, .serial = "SERIAL-1", .stamp = 9, .status = 6}});
  const auto changes = data_changes(before, after);

  ASSERT_EQ(changes.size(), 1u);
  EXPECT_EQ(shown_event(changes[0], kMorning, ChangeFormat::kText),
            "13:00:00 drives c0/e0/s1 changed: status 5 -> 6, mod_timestamp 1 -> 9\n");
  EXPECT_EQ(shown_event(changes[0], kMorning, ChangeFormat::kNdjson),
            R"({"time":"2026-03-02T10:00:00Z",)" + all(changes, ChangeFormat::kNdjson).substr(1));
}

TEST_F(ShownChanges, ArePrintableWhateverADeviceSays) {
  const KindInventory before = drives({});
  const KindInventory after = drives({{.serial = "\x1b[2J\n"}});

  EXPECT_EQ(all(data_changes(before, after), ChangeFormat::kText),
            "drives c0/e0/s0 came: MODEL, serial_num \\x1b[2J\\x0a\n");
  EXPECT_EQ(all(data_changes(before, after), ChangeFormat::kNdjson).find('\x1b'), std::string::npos);
}

TEST_F(ShownChanges, ShowThatATextIsEmpty) {
  mcstore::Change change{.type = mcstore::ChangeType::kStatus, .kind = &mcstore::kind_named("drives")};
  change.fields.push_back({.name = "text", .before = {"full"}, .after = {""}});

  EXPECT_EQ(shown_change(change, ChangeFormat::kText), "drives changed\n  text: full -> (empty)\n");
}

TEST_F(ShownChanges, BeginWithWhatThereIs) {
  const KindInventory fine = drives({numbered_drive(1), numbered_drive(2)});
  const KindInventory absent = look_in_vain("bbus", KindStatus::kAbsent, "");
  const KindInventory unreadable = look_in_vain("virtual-drives", KindStatus::kUnreadable, "");
  KindInventory damaged = look_at("controllers", {});
  damaged.status = KindStatus::kDamaged;

  EXPECT_EQ(shown_beginning({&damaged, &fine, &unreadable, &absent}, kMorning, ChangeFormat::kText),
            "13:00:00 watching 0 controllers (damaged), 2 drives, virtual-drives unreadable\n");
  EXPECT_EQ(shown_beginning({&absent}, kMorning, ChangeFormat::kText),
            "13:00:00 watching for store files: there are none yet\n");
  EXPECT_EQ(shown_beginning({&fine}, kMorning, ChangeFormat::kNdjson),
            R"({"time":"2026-03-02T10:00:00Z","change":"watching",)"
            R"("kinds":[{"kind":"drives","status":"fine","devices":2}]})"
            "\n");
}

}  // namespace
}  // namespace tests
