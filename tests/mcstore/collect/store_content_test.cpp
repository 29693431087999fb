#include "mcstore/collect/store_content.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "host/bytes.h"
#include "mcstore/kinds/kind.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

using mcstore::InventoryError;
using mcstore::parse_inventory;

Bytes only_store(const std::string &json) {
  const auto stores = parse_inventory(json);
  EXPECT_EQ(stores.size(), 1u);
  EXPECT_EQ(stores.at(0).path, "/var/storctlr_info");
  return Bytes(stores.at(0).bytes);
}

std::string complaint(const std::string &json) {
  try {
    parse_inventory(json);
  } catch (const InventoryError &error) {
    return error.what();
  }
  return "(accepted)";
}

// A controller record with nothing but this field.
std::string with_field(const std::string &field) { return R"({"controllers": {"records": [{)" + field + "}]}}"; }

TEST(Inventory, WritesTheHeaderAndLittleEndianRecords) {
  const Bytes store = only_store(R"({"controllers": {"subsystem_state": 2, "records": [
      {"index": 3, "controller": "SLOT-3", "is_supported": true, "vendor_id": 258, "memory_size": 72623859790382856,
       "patrol_read_percent_complete": -2, "mod_timestamp": -3, "reserved": "0a0B"}, {"index": 4}]}})");

  Bytes record = Bytes::repeated(kControllerSize, 0);
  record.put(0, Bytes::hex("03")).put_text(1, "SLOT-3").put(104, Bytes::hex("01")).put(255, Bytes::hex("02 01"));
  record.put(790, Bytes::hex("08 07 06 05 04 03 02 01")).put(817, Bytes::hex("fe"));
  record.put(827, Bytes::hex("fd ff ff ff")).put(966, Bytes::hex("0a 0b"));
  EXPECT_EQ(store, Bytes::hex("02") + record + Bytes::repeated(kControllerSize, 0).put(0, Bytes::hex("04")));
}

TEST(Inventory, WhatIsLeftOutIsZero) {
  EXPECT_EQ(only_store(R"({"controllers": {}})"), Bytes::hex("00"));
  EXPECT_EQ(only_store(R"({"controllers": {"records": [{}]}})"), Bytes::repeated(1 + kControllerSize, 0));
}

TEST(Inventory, TakesTheLimitsOfEveryWidth) {
  EXPECT_EQ(only_store(with_field(R"("index": 255)")).slice(1, 1), Bytes::hex("ff"));
  EXPECT_EQ(only_store(with_field(R"("vendor_id": 65535)")).slice(256, 2), Bytes::hex("ff ff"));
  EXPECT_EQ(only_store(with_field(R"("raid_levels_supported": 4294967295)")).slice(783, 4), Bytes::hex("ff ff ff ff"));
  EXPECT_EQ(only_store(with_field(R"("memory_size": 18446744073709551615)")).slice(791, 8), Bytes::repeated(8, 0xFF));
  EXPECT_EQ(only_store(with_field(R"("mod_timestamp": -2147483648)")).slice(828, 4), Bytes::hex("00 00 00 80"));
  EXPECT_EQ(only_store(with_field(R"("mod_timestamp": 2147483647)")).slice(828, 4), Bytes::hex("ff ff ff 7f"));
  EXPECT_EQ(only_store(with_field(R"("patrol_read_percent_complete": -128)")).slice(818, 1), Bytes::hex("80"));
  EXPECT_EQ(only_store(with_field(R"("smbios_pcislotname": "12345")")).slice(18, 6), Bytes::hex("31 32 33 34 35 00"));
}

TEST(Inventory, RefusesANumberThatDoesNotFitAndTellsWhere) {
  EXPECT_EQ(complaint(R"({"controllers": {"records": [{}, {"vendor_id": 65536}]}})"),
            "controllers.records[1].vendor_id: 65536 does not fit: from 0 to 65535 does");
  EXPECT_EQ(complaint(with_field(R"("index": -1)")),
            "controllers.records[0].index: -1 does not fit: from 0 to 255 does");
  EXPECT_EQ(complaint(with_field(R"("mod_timestamp": 2147483648)")),
            "controllers.records[0].mod_timestamp: 2147483648 does not fit: from -2147483648 to 2147483647 does");
  EXPECT_EQ(complaint(with_field(R"("mod_timestamp": -2147483649)")),
            "controllers.records[0].mod_timestamp: -2147483649 does not fit: from -2147483648 to 2147483647 does");
  EXPECT_EQ(complaint(R"({"controllers": {"subsystem_state": 256}})"),
            "controllers.subsystem_state: 256 does not fit: from 0 to 255 does");
}

TEST(Inventory, RefusesATextThatDoesNotFitAndTellsWhere) {
  EXPECT_EQ(complaint(with_field(R"("smbios_pcislotname": "123456")")),
            "controllers.records[0].smbios_pcislotname: is 6 bytes long: at most 5 fit");
  EXPECT_EQ(complaint(with_field(R"("vendor": "a\u0000b")")), "controllers.records[0].vendor: contains a NUL");
}

TEST(Inventory, RefusesTheWrongType) {
  EXPECT_EQ(complaint("[]"), "the inventory: must be an object");
  EXPECT_EQ(complaint(R"({"controllers": []})"), "controllers: must be an object");
  EXPECT_EQ(complaint(R"({"controllers": {"records": {}}})"), "controllers.records: must be an array");
  EXPECT_EQ(complaint(R"({"controllers": {"records": [1]}})"), "controllers.records[0]: must be an object");
  EXPECT_EQ(complaint(with_field(R"("index": 1.5)")), "controllers.records[0].index: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("index": true)")), "controllers.records[0].index: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("is_supported": "yes")")),
            "controllers.records[0].is_supported: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("vendor": 1)")), "controllers.records[0].vendor: must be a string");
}

TEST(Inventory, RefusesReservedBytesThatAreNoneOrTooMany) {
  EXPECT_EQ(complaint(with_field(R"("reserved": "0")")),
            "controllers.records[0].reserved: must be a string of pairs of hexadecimal digits");
  EXPECT_EQ(complaint(with_field(R"("reserved": 0)")),
            "controllers.records[0].reserved: must be a string of pairs of hexadecimal digits");
  EXPECT_EQ(complaint(with_field(R"("reserved": ")" + std::string(514, '0') + '"')),
            "controllers.records[0].reserved: is 257 bytes long: at most 256 fit");
}

TEST(Inventory, RefusesUnknownAndRepeatedKeys) {
  EXPECT_EQ(complaint(R"({"toasters": {}})"), "toasters: is not a kind of device");
  EXPECT_EQ(complaint(R"({"controllers": {"state": 2}})"), "controllers.state: is not a field of this object");
  EXPECT_EQ(complaint(with_field(R"("vendr": "x")")), "controllers.records[0].vendr: is not a field of this object");
  EXPECT_EQ(complaint(with_field(R"("index": 1, "index": 2)")), "index: this key stands twice in one object");
}

// Texts may be empty everywhere, and bytes unused. Each other field has a value somewhere, in both.
TEST(Inventory, OfTheExamplesLeavesNothingOutButTextsAndBytes) {
  for (const char *name : {"inventory.json", "inventory-later.json"}) {
    std::ifstream file(std::string(PROJECT_DIRECTORY "/docs/examples/") + name);
    const ShownJson inventory(std::string(std::istreambuf_iterator<char>(file), {}));

    for (const mcstore::Kind &kind : mcstore::kinds()) {
      if (kind.store_path.empty()) continue;
      const ShownJson records = inventory[std::string(kind.name)]["records"];
      std::set<std::string> keys;
      for (size_t i = 0; i < records.size(); ++i)
        for (const std::string &key : records[i].keys()) keys.insert(key);
      for (const mcserver::Field &field : kind.fields) {
        if (field.type == mcserver::FieldType::kText || field.type == mcserver::FieldType::kBytes) continue;
        EXPECT_TRUE(keys.contains(field.name)) << name << ", " << kind.name << ": " << field.name;
      }
    }
  }
}

TEST(Inventory, TellsWhereJsonIsBroken) {
  EXPECT_EQ(complaint("{\n  \"controllers\": nonsense\n}").substr(0, 36), "parse error at line 2, column 19: sy");
}

}  // namespace
}  // namespace tests
