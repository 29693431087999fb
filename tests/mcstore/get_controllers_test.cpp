#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/controllers/full_record.h"
#include "records/controller_record.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class GetControllers : public McstoreTest {
 protected:
  void store(const Bytes &records, uint8_t state = 2) { files.write(kControllerStore, Bytes().u8(state) + records); }
};

TEST_F(GetControllers, JsonHoldsEveryFieldInTheRecordsOrder) {
  store(full_controller_record(Bytes::Order::kLittle));

  const ShownJson json(mcstore_here("get controllers --format json").out);

  ASSERT_EQ(json["records"].size(), 1u);
  std::vector<std::string> expected;
  expected.reserve(std::size(mcserver::records::kController));
  for (const mcserver::Field &field : mcserver::records::kController) expected.emplace_back(field.name);
  EXPECT_EQ(json["records"][0].keys(), expected);
}

TEST_F(GetControllers, JsonReproducesTheStoreFile) {
  store(full_controller_record(Bytes::Order::kLittle));
  const std::string stored = files.read(kControllerStore);
  const ShownJson shown(mcstore_here("get controllers --format json").out);

  files.write_text("/again.json", R"({"controllers": {"subsystem_state": )" + shown["subsystem_state"].text() +
                                      R"(, "records": )" + shown["records"].text() + "}}");
  EXPECT_EQ(mcstore_here("collect " + files.real("/again.json")).exit_code, 0);

  EXPECT_EQ(files.read(kControllerStore), stored);
}

TEST_F(GetControllers, JsonShowsRawValues) {
  Bytes record = Controller{.index = 3, .name = "SLOT-3", .vendor_id = 0x1234, .stamp = 0x80000000}.stored();
  store(record.put(778, Bytes().u8(1)).put(790, little_endian().u64(0xFFFFFFFFFFFFFFFF)).put(817, Bytes().u8(0xFF)));

  const ShownJson json(mcstore_here("get controllers --format json").out);

  EXPECT_EQ(json["format"], 1);
  EXPECT_EQ(json["kind"], "controllers");
  EXPECT_EQ(json["simulated"], false);
  EXPECT_EQ(json["subsystem_state"], 2);
  const ShownJson controller = json["records"][0];
  EXPECT_EQ(controller["index"], 3);
  EXPECT_EQ(controller["controller"], "SLOT-3");
  EXPECT_EQ(controller["vendor_id"], 0x1234);
  EXPECT_EQ(controller["mod_timestamp"], INT32_MIN);
  EXPECT_EQ(controller["disable_ncq"], 1);
  EXPECT_EQ(controller["memory_size"], UINT64_MAX);
  EXPECT_EQ(controller["patrol_read_percent_complete"], -1);
  EXPECT_EQ(controller["reserved"], std::string(512, '0'));
}

TEST_F(GetControllers, TableHasARowForEveryFieldButTheReservedBytes) {
  store(full_controller_record(Bytes::Order::kLittle));

  const std::string table = mcstore_here("get controllers").out;

  for (const mcserver::Field &field : mcserver::records::kController)
    EXPECT_EQ(table.find("\n" + std::string(field.name) + " ") != table.npos, field.type != mcserver::FieldType::kBytes)
        << field.name;
}

TEST_F(GetControllers, TablePutsDevicesSideBySide) {
  store(Controller{.index = 0, .name = "SLOT-0", .serial = "AAA"}.stored() +
        Controller{.index = 1, .name = "SLOT-1", .serial = "BBBBBBBBB"}.stored());

  const std::string table = mcstore_here("get controllers").out;

  EXPECT_THAT(table, StartsWith("RAID controllers: 2, subsystem state 2\n"
                                "\n"
                                "                                       SLOT-0  SLOT-1\n"
                                "index                                  0       1\n"));
  EXPECT_THAT(table, HasSubstr("\nserial_number                          AAA     BBBBBBBBB\n"));
  EXPECT_THAT(table, HasSubstr("\nvendor_id                              0x1000  0x1000\n"));
}

TEST_F(GetControllers, TableStartsANewBlockWhenDevicesDoNotFitSideBySide) {
  Bytes records;
  for (uint8_t i = 0; i < 12; ++i)
    records += Controller{.index = i, .name = "A-RATHER-LONG-" + std::to_string(i % 10)}.stored();
  store(records);

  const std::string table = mcstore_here("get controllers").out;

  // A headline, then an empty line, a title and the fields without the reserved bytes for each block.
  const auto lines_of_block = static_cast<std::ptrdiff_t>(2 + std::size(mcserver::records::kController) - 1);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n') % lines_of_block, 1);
  EXPECT_THAT(table, HasSubstr("A-RATHER-LONG-9"));
  size_t start = 0;
  for (size_t end = table.find('\n'); end != table.npos; start = end + 1, end = table.find('\n', start))
    EXPECT_LE(end - start, 120u);
}

TEST_F(GetControllers, AnEmptyInventoryIsShownAsSuch) {
  store(Bytes(), 1);

  EXPECT_EQ(mcstore_here("get controllers").out, "RAID controllers: 0, subsystem state 1\n");
  EXPECT_EQ(ShownJson(mcstore_here("get controllers --format json").out)["records"], ShownJson("[]"));
}

TEST_F(GetControllers, HexShowsTheReplyAsItCame) {
  store(Bytes(), 1);

  char expected[256];
  snprintf(expected, sizeof expected,
           "00000000  28 00 00 01 00 00 00 %02x %02x 00 00 00 00 00 00 00  |(...............|\n"
           "00000010  00 00                                            |..|\n",
           kControllerSize >> 8, kControllerSize & 0xFF);
  EXPECT_EQ(mcstore_here("get controllers --format hex").out, expected);
}

TEST_F(GetControllers, RecognisesASimulatedReply) {
  files.write_text("/debug/mctool_storage_debug", "");

  const ShownJson json(mcstore_here("get controllers --format json").out);

  EXPECT_EQ(json["simulated"], true);
  ASSERT_EQ(json["records"].size(), 2u);
  EXPECT_EQ(json["records"][1]["controller"], "SLOT-1");
  EXPECT_EQ(json["records"][1]["raid_levels_supported"], 0xFFFF);
  EXPECT_EQ(json["records"][1]["cache_memory_size"], 1024);
  EXPECT_THAT(mcstore_here("get controllers").out, StartsWith("RAID controllers: 2, subsystem state 2 (simulated)\n"));
}

TEST_F(GetControllers, ASmallBufferGrows) {
  store(Controller().stored());
  const std::string expected = mcstore_here("get controllers --format hex").out;

  EXPECT_EQ(mcstore_here("get controllers --format hex --buffer-size 1").out, expected);

  files.write_text("/debug/mctool_storage_debug", "");
  EXPECT_EQ(mcstore_here("get controllers --format hex --buffer-size 1").out,
            mcstore_here("get controllers --format hex").out);
}

TEST_F(GetControllers, TracesToStandardErrorOnRequest) {
  files.write_text("/var/storctlr_info", "");

  EXPECT_EQ(mcstore_here("get controllers --trace 3").exit_code, 1);
  store(Bytes(), 1);
  EXPECT_THAT(mcstore_here("get controllers --trace 3").err,
              HasSubstr("<read_product_file: 180> [read_product_file]fopen(/etc/product) failed: errno 2"));
  EXPECT_EQ(mcstore_here("get controllers --trace 2").err, "");
}

TEST_F(GetControllers, AFailureNamesTheEntryPointAndTheStatus) {
  const Outcome outcome = mcstore_here("get controllers");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(
      outcome.err,
      "mcstore: mc_get_store_ctrls returned -37: no data: a store file is missing, or its header cannot be read\n");
}

TEST_F(GetControllers, APluginThatCannotBeLoadedIsAFailure) {
  files.write_text("/not-a-plugin.so", "text");

  const Outcome outcome = mcstore_here("get controllers --plugin " + files.real("/not-a-plugin.so"));

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("not-a-plugin.so"));
}

TEST_F(GetControllers, WrongUsageExitsWithTwo) {
  EXPECT_EQ(mcstore("").exit_code, 2);
  EXPECT_EQ(mcstore("get").exit_code, 2);
  EXPECT_EQ(mcstore("get toasters").exit_code, 2);
  EXPECT_EQ(mcstore("get controllers --format yaml").exit_code, 2);
  EXPECT_EQ(mcstore("get controllers --root /nowhere/at/all").exit_code, 2);
  EXPECT_EQ(mcstore("get controllers --buffer-size 0").exit_code, 2);
  EXPECT_EQ(mcstore("--help").exit_code, 0);
}

}  // namespace
}  // namespace tests
