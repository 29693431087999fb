#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "raid/bbus/bbu_bytes.h"
#include "raid/bbus/full_record.h"
#include "records/bbu_record.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class GetBbus : public McstoreTest {
 protected:
  GetBbus() {
    files.write("/var/storctlr_info", Bytes().u8(2));
    files.write(kBbuStore, full_battery_record(Bytes::Order::kLittle) + full_capacitor_record(Bytes::Order::kLittle));
  }
};

TEST_F(GetBbus, JsonReproducesTheStoreFile) {
  const std::string stored = files.read(kBbuStore);
  const ShownJson shown(mcstore_here("get bbus --format json").out);

  files.write_text("/again.json", R"({"bbus": {"records": )" + shown["records"].text() + "}}");
  files.remove(kBbuStore);
  EXPECT_EQ(mcstore_here("collect " + files.real("/again.json")).exit_code, 0);

  EXPECT_EQ(files.read(kBbuStore), stored);
}

TEST_F(GetBbus, JsonHasTheFieldsOfTheRecordsVariant) {
  const ShownJson records = ShownJson(mcstore_here("get bbus --format json").out)["records"];

  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].size(), std::size(mcserver::records::kBbuBattery));
  EXPECT_EQ(records[0]["design_capacity"], 0x8535);
  EXPECT_EQ(records[0]["remaining_capacity"], 0x8737);  // little-endian in the reply
  EXPECT_EQ(records[0]["completed_charge_cycles"], 0x8838);
  EXPECT_FALSE(records[0].contains("capacitance"));
  EXPECT_EQ(records[1].size(), std::size(mcserver::records::kBbuCapacitor));
  EXPECT_EQ(records[1]["design_capacity"], 0x8939);
  EXPECT_EQ(records[1]["unused"], "717273747576");
  EXPECT_FALSE(records[1].contains("retention_time"));
  EXPECT_EQ(records[1]["next_learn_cycle"], -1826376877);
}

TEST_F(GetBbus, TableHasTheFieldsOfBothVariants) {
  const std::string table = mcstore_here("get bbus").out;

  EXPECT_THAT(table, StartsWith("Battery backup units: 2\n"));
  for (const auto &fields : {std::span<const mcserver::Field>(mcserver::records::kBbuBattery),
                             std::span<const mcserver::Field>(mcserver::records::kBbuCapacitor)})
    for (const mcserver::Field &field : fields)
      EXPECT_EQ(table.find("\n" + std::string(field.name) + " ") != table.npos, field.label != nullptr) << field.name;
}

TEST_F(GetBbus, WatchReportsNoGoneUnit) {
  files.write(kBbuStore, Bytes::repeated(161, 0));

  EXPECT_EQ(mcstore_here("watch bbus --interval 0 --count 2").out,
            "call 1: 1 new\n  new        (controller_index 0)\ncall 2: nothing changed\n");
}

// ------------------------------------------------------------------------------------------------ the flash module

class CollectFlashModule : public McstoreTest {
 protected:
  Outcome collect(const std::string &module) {
    files.write_text("/inventory.json", R"({"controllers": {}, "bbus": {"records": [{"tfm_vendor": "COLLECTOR"}]},
                                            "flash-module": )" +
                                            module + "}");
    return mcstore_here("collect " + files.real("/inventory.json"));
  }
  ShownJson bbu() { return ShownJson(mcstore_here("get bbus --format json").out)["records"][0]; }
  std::string complaint(const std::string &module) {
    const Outcome outcome = collect(module);
    EXPECT_EQ(outcome.exit_code, 2);
    EXPECT_FALSE(files.exists(kFlashModuleImage));
    const std::string start = "mcstore: " + files.real("/inventory.json") + ": flash-module";
    EXPECT_THAT(outcome.err, StartsWith(start));
    return outcome.err.substr(std::min(start.size(), outcome.err.size()));
  }
};

constexpr char kModule[] = R"({"manufacturer": "VENDOR", "product_name": "M", "serial_number": "S1", "part_number": "P",
                              "fru_file_id": "F", "revision": {"part": "AB", "format": 7, "version": "CDE"}})";

TEST_F(CollectFlashModule, CompletesEveryBbu) {
  EXPECT_EQ(collect(kModule).exit_code, 0);

  EXPECT_EQ(bbu()["tfm_vendor"], "VENDOR");
  EXPECT_EQ(bbu()["tfm_model"], "M");
  EXPECT_EQ(bbu()["tfm_serial_num"], "S1");
  EXPECT_EQ(bbu()["tfm_revision"], "P[AB]F[7]V[CDE]");
}

TEST_F(CollectFlashModule, WritesAnImageWhoseAreasAddUpToZero) {
  collect(kModule);

  const std::string image = files.read(kFlashModuleImage);

  ASSERT_EQ(image.size(), 128u);
  EXPECT_EQ(image.substr(0, 7), std::string("\x01\0\0\x01\0\0\0", 7));
  EXPECT_EQ(image.substr(14, 32), std::string("\xC6VENDOR\x01M\xC2S1\x01P\x01"
                                              "F\x06"
                                              "AB\x07"
                                              "CDE\xC1\0\0\0\0\0\0\0\0",
                                              32));
  uint8_t header_sum = 0;
  uint8_t board_sum = 0;
  for (size_t i = 0; i < 8; ++i) header_sum = static_cast<uint8_t>(header_sum + static_cast<uint8_t>(image[i]));
  for (size_t i = 8; i < 128; ++i) board_sum = static_cast<uint8_t>(board_sum + static_cast<uint8_t>(image[i]));
  EXPECT_EQ(header_sum, 0);
  EXPECT_EQ(board_sum, 0);
}

TEST_F(CollectFlashModule, TakesTheLongestTextsThatFitTheRecord) {
  const std::string module = R"({"manufacturer": "1234567890123456789", "product_name": "abcdefghijklmnopqrs",
                                 "serial_number": "123456789012345"})";

  EXPECT_EQ(collect(module).exit_code, 0);

  EXPECT_EQ(bbu()["tfm_vendor"], "1234567890123456789");
  EXPECT_EQ(bbu()["tfm_model"], "abcdefghijklmnopqrs");
  EXPECT_EQ(bbu()["tfm_serial_num"], "123456789012345");
}

TEST_F(CollectFlashModule, SaysWhatDoesNotFit) {
  EXPECT_EQ(complaint(R"({"manufacturer": "12345678901234567890"})"),
            ".manufacturer: is 20 bytes long: at most 19 fit\n");
  EXPECT_EQ(complaint(R"({"serial_number": 7})"), ".serial_number: must be a string\n");
  EXPECT_EQ(complaint(R"({"maker": ""})"), ".maker: is not a field of this object\n");
  EXPECT_EQ(complaint("[]"), ": must be an object\n");
  EXPECT_EQ(complaint(R"({"revision": {"part": "A", "format": 1, "version": "CDE"}})"),
            ".revision.part: must be 2 characters\n");
  EXPECT_EQ(complaint(R"({"revision": {"part": "AB", "format": 10, "version": "CDE"}})"),
            ".revision.format: 10 does not fit: from 0 to 9 does\n");
  EXPECT_EQ(complaint(R"({"revision": {"letters": "AB"}})"), ".revision.letters: is not a field of this object\n");
  EXPECT_EQ(complaint(R"({"part_number": ")" + std::string(63, 'P') + R"(", "fru_file_id": ")" + std::string(63, 'F') +
                      R"("})"),
            ": its texts are 19 bytes too long together\n");
}

// ------------------------------------------------------------------------------------------------ variants in JSON

TEST_F(CollectFlashModule, ABbuHasOnlyTheFieldsOfItsVariant) {
  const auto store = [&](const std::string &record) {
    files.write_text("/bbus.json", R"({"bbus": {"records": [)" + record + "]}}");
    return mcstore_here("collect " + files.real("/bbus.json"));
  };

  EXPECT_EQ(store(R"({"design_capacity": 258, "capacitor": true})").exit_code, 0);
  EXPECT_EQ(files.read(kBbuStore).substr(74, 2), "\x02\x01");
  EXPECT_EQ(store(R"({"capacitor": false, "design_capacity": 258})").exit_code, 0);
  EXPECT_EQ(files.read(kBbuStore).substr(77, 2), "\x02\x01");
  EXPECT_THAT(store(R"({"capacitance": 1})").err,
              HasSubstr("bbus.records[0].capacitance: is not a field of this object"));
  EXPECT_THAT(store(R"({"capacitor": true, "retention_time": 1})").err,
              HasSubstr("bbus.records[0].retention_time: is not a field of this object"));
}

}  // namespace
}  // namespace tests
