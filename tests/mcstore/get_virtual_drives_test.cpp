#include <gmock/gmock.h>

#include "host/bytes.h"
#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "records/virtual_drive_record.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char kVirtualDriveStore[] = "/var/storvirtdrive_info";

class GetVirtualDrives : public McstoreTest {
 protected:
  GetVirtualDrives() { files.write("/var/storctlr_info", Bytes().u8(2)); }

  // Every byte that counts has a value of its own; two members, and one hot spare.
  static Bytes record() {
    Bytes record = Bytes::repeated(5799, 0);
    for (size_t i = 0; i < 94; ++i) record.put(i, Bytes().u8(1 + i));
    record.put_text(2, "GUID").put(7, Bytes::repeated(28, 0)).put_text(35, "NAME").put(40, Bytes::repeated(11, 0));
    record.put(77, Bytes().u8(2)).put(82, Bytes::repeated(12, 0)).put(94, Bytes().u8(1));
    for (size_t i = 95; i < 115; ++i) record.put(i, Bytes().u8(i));
    for (size_t i = 5215; i < 5262; ++i) record.put(i, Bytes().u8(i % 200));
    for (size_t i = 5770; i < 5799; ++i) record.put(i, Bytes().u8(i % 199));
    return record;
  }
};

TEST_F(GetVirtualDrives, JsonReproducesTheStoreFile) {
  files.write(kVirtualDriveStore, record());
  const std::string stored = files.read(kVirtualDriveStore);
  const ShownJson shown(mcstore_here("get virtual-drives --format json").out);

  files.write_text("/again.json", R"({"virtual-drives": {"records": )" + shown["records"].text() + "}}");
  files.remove(kVirtualDriveStore);
  EXPECT_EQ(mcstore_here("collect " + files.real("/again.json")).exit_code, 0);

  EXPECT_EQ(shown["records"][0].size(), std::size(mcserver::records::kVirtualDrive));
  EXPECT_EQ(files.read(kVirtualDriveStore), stored);
}

TEST_F(GetVirtualDrives, JsonHasTheEntriesThatCount) {
  files.write(kVirtualDriveStore,
              Bytes::repeated(5799, 0)
                  .put(77, Bytes().u8(9))
                  .put(78, Bytes::hex("01 02 03 04"))
                  .put(94, Bytes().u8(1))
                  .put(95, Bytes::hex("05 06 07 08 00 00 00 00 00 00 00 09 00 00 00 00 00 00 00 0a")));

  const ShownJson drive = ShownJson(mcstore_here("get virtual-drives --format json").out)["records"][0];

  EXPECT_EQ(drive["pd"].size(), 8u);
  EXPECT_EQ(drive["pd"][1], ShownJson(R"({"controller_index": 3, "slot_number": 4})"));
  EXPECT_EQ(drive["pd_v5"].size(), 9u);
  ASSERT_EQ(drive["hot_spares"].size(), 1u);
  EXPECT_EQ(drive["hot_spares"][0]["starting_block"], 8);
  EXPECT_EQ(drive["hot_spares"][0]["number_of_blocks"], 9);
  EXPECT_EQ(drive["hot_spares"][0]["hot_spare_tail_byte"], 10);
}

TEST_F(GetVirtualDrives, TableHasTheFirstMembersAndTheirNumber) {
  files.write(kVirtualDriveStore, Bytes::repeated(5799, 0)
                                      .put(77, Bytes().u8(9))
                                      .put(78, Bytes::hex("00 01 00 02"))
                                      .put(52, Bytes::hex("00 00 00 40")));

  const std::string table = mcstore_here("get virtual-drives").out;

  EXPECT_THAT(table, StartsWith("Virtual drives: 1\n"));
  EXPECT_THAT(table, HasSubstr("\nsize                                1.0 GiB\n"));
  EXPECT_THAT(
      table, HasSubstr("\npd                                  0/1, 0/2, 0/0, 0/0, 0/0, 0/0, 0/0, 0/0, ... 9 in all\n"));
  for (const mcserver::Field &field : mcserver::records::kVirtualDrive)
    EXPECT_THAT(table, HasSubstr("\n" + std::string(field.name))) << field.name;
}

TEST_F(GetVirtualDrives, CollectSaysWhichEntryDoesNotFit) {
  const auto complaint = [&](const std::string &field) {
    files.write_text("/bad.json", R"({"virtual-drives": {"records": [{)" + field + "}]}}");
    const Outcome outcome = mcstore_here("collect " + files.real("/bad.json"));
    EXPECT_EQ(outcome.exit_code, 2);
    return outcome.err.substr(outcome.err.find("virtual-drives."));
  };
  std::string nine = R"("pd": [{})";
  for (int i = 0; i < 8; ++i) nine += ", {}";

  EXPECT_EQ(complaint(nine + "]"), "virtual-drives.records[0].pd: has 9 entries: at most 8 fit\n");
  EXPECT_EQ(complaint(R"("pd": {})"), "virtual-drives.records[0].pd: must be an array\n");
  EXPECT_EQ(complaint(R"("pd": [{}, {"slot": 1}])"),
            "virtual-drives.records[0].pd[1].slot: is not a field of this object\n");
  EXPECT_EQ(complaint(R"("hot_spares": [{"span": 256}])"),
            "virtual-drives.records[0].hot_spares[0].span: 256 does not fit: from 0 to 255 does\n");
}

// ------------------------------------------------------------------------------------------------------ expanders

class GetExpanders : public McstoreTest {};

TEST_F(GetExpanders, HasNoDataButASimulation) {
  const Outcome without = mcstore_here("get expanders");
  files.write_text("/debug/mctool_storage_debug", "");
  const ShownJson simulated(mcstore_here("get expanders --format json").out);

  EXPECT_EQ(without.exit_code, 1);
  EXPECT_THAT(without.err, StartsWith("mcstore: mc_get_store_sasexpanders returned -37: no data"));
  EXPECT_EQ(simulated["simulated"], true);
  EXPECT_EQ(simulated["records"],
            ShownJson(R"([{"data": "010502326514050065646362fffefdfc)" + std::string(136, '0') + "\"}]"));
}

TEST_F(GetExpanders, CannotBeCollected) {
  files.write_text("/inventory.json", R"({"expanders": {}})");

  const Outcome outcome = mcstore_here("collect " + files.real("/inventory.json"));

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_THAT(outcome.err, HasSubstr("expanders: has no store file"));
}

}  // namespace
}  // namespace tests
