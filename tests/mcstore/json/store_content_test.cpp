#include "mcstore/json/store_content.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "host/bytes.h"
#include "mcstore/json/inventory_format.h"
#include "mcstore/kinds/kind.h"
#include "mcstore/shown_json.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

using mcstore::InventoryError;
using mcstore::parse_inventory;

Bytes only_store(const std::string &json) {
  const auto stores = parse_inventory(json).stores;
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

// An inventory of controllers with these members.
std::string controllers(const std::string &members) {
  return R"({"format": 2, "kinds": [{"kind": "controllers", )" + members + "}]}";
}

// One of a single controller with nothing but this field.
std::string with_field(const std::string &field) { return controllers(R"("devices": [{"fields": {)" + field + "}}]"); }

TEST(Inventory, WritesTheHeaderAndLittleEndianRecords) {
  const Bytes store = only_store(controllers(R"("state": 2, "devices": [
      {"fields": {"index": 3, "controller": "SLOT-3", "is_supported": true, "vendor_id": 258, "memory_size": 72623859790382856,
       "patrol_read_percent_complete": -2, "mod_timestamp": -3, "reserved": "0a0B"}}, {"fields": {"index": 4}}])"));

  Bytes record = Bytes::repeated(kControllerSize, 0);
  record.put(0, Bytes::hex("03")).put_text(1, "SLOT-3").put(104, Bytes::hex("01")).put(255, Bytes::hex("02 01"));
  record.put(790, Bytes::hex("08 07 06 05 04 03 02 01")).put(817, Bytes::hex("fe"));
  record.put(827, Bytes::hex("fd ff ff ff")).put(966, Bytes::hex("0a 0b"));
  EXPECT_EQ(store, Bytes::hex("02") + record + Bytes::repeated(kControllerSize, 0).put(0, Bytes::hex("04")));
}

TEST(Inventory, WhatIsLeftOutIsZero) {
  EXPECT_EQ(only_store(R"({"format": 2, "kinds": [{"kind": "controllers"}]})"), Bytes::hex("00"));
  EXPECT_EQ(only_store(controllers(R"("devices": [{}])")), Bytes::repeated(1 + kControllerSize, 0));
}

TEST(Inventory, TakesTheLimitsOfEveryWidth) {
  EXPECT_EQ(only_store(with_field(R"("index": 255)")).slice(1, 1), Bytes::hex("ff"));
  EXPECT_EQ(only_store(with_field(R"("vendor_id": 65535)")).slice(256, 2), Bytes::hex("ff ff"));
  EXPECT_EQ(only_store(with_field(R"("raid_levels_supported": 4294967295)")).slice(783, 4), Bytes::hex("ff ff ff ff"));
  EXPECT_EQ(only_store(with_field(R"("memory_size": 18446744073709551615)")).slice(791, 8), Bytes::repeated(8, 0xFF));
  EXPECT_EQ(only_store(with_field(R"("mod_timestamp": -2147483648)")).slice(828, 4), Bytes::hex("00 00 00 80"));
  EXPECT_EQ(only_store(with_field(R"("mod_timestamp": 2147483647)")).slice(828, 4), Bytes::hex("ff ff ff 7f"));
  EXPECT_EQ(only_store(with_field(R"("patrol_read_percent_complete": -128)")).slice(818, 1), Bytes::hex("80"));
  EXPECT_EQ(only_store(with_field(R"("smbios_pcislotname": "123456")")).slice(18, 6), Bytes::hex("31 32 33 34 35 36"));
}

TEST(Inventory, RefusesANumberThatDoesNotFitAndTellsWhere) {
  EXPECT_EQ(complaint(controllers(R"("devices": [{}, {"fields": {"vendor_id": 65536}}])")),
            "controllers.devices[1].fields.vendor_id: 65536 does not fit: from 0 to 65535 does");
  EXPECT_EQ(complaint(with_field(R"("index": -1)")),
            "controllers.devices[0].fields.index: -1 does not fit: from 0 to 255 does");
  EXPECT_EQ(
      complaint(with_field(R"("mod_timestamp": 2147483648)")),
      "controllers.devices[0].fields.mod_timestamp: 2147483648 does not fit: from -2147483648 to 2147483647 does");
  EXPECT_EQ(
      complaint(with_field(R"("mod_timestamp": -2147483649)")),
      "controllers.devices[0].fields.mod_timestamp: -2147483649 does not fit: from -2147483648 to 2147483647 does");
  EXPECT_EQ(complaint(controllers(R"("state": 256)")), "controllers.state: 256 does not fit: from 0 to 255 does");
}

TEST(Inventory, RefusesATextThatDoesNotFitAndTellsWhere) {
  EXPECT_EQ(complaint(with_field(R"("smbios_pcislotname": "1234567")")),
            "controllers.devices[0].fields.smbios_pcislotname: is 7 bytes long: at most 6 fit");
  EXPECT_EQ(complaint(with_field(R"("vendor": "a\u0000b")")), "controllers.devices[0].fields.vendor: contains a NUL");
}

TEST(Inventory, RefusesTheWrongType) {
  EXPECT_EQ(complaint("[]"), "the inventory: must be an object");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": {}})"), "kinds: must be an array");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [[]]})"), "kinds[0]: must be an object");
  EXPECT_EQ(complaint(controllers(R"("devices": {})")), "controllers.devices: must be an array");
  EXPECT_EQ(complaint(controllers(R"("devices": [1])")), "controllers.devices[0]: must be an object");
  EXPECT_EQ(complaint(controllers(R"("devices": [{"fields": []}])")),
            "controllers.devices[0].fields: must be an object");
  EXPECT_EQ(complaint(controllers(R"("state": "ready")")), "controllers.state: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("index": 1.5)")), "controllers.devices[0].fields.index: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("index": true)")), "controllers.devices[0].fields.index: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("is_supported": "yes")")),
            "controllers.devices[0].fields.is_supported: must be a whole number");
  EXPECT_EQ(complaint(with_field(R"("vendor": 1)")), "controllers.devices[0].fields.vendor: must be a string");
}

TEST(Inventory, RefusesReservedBytesThatAreNoneOrTooMany) {
  EXPECT_EQ(complaint(with_field(R"("reserved": "0")")),
            "controllers.devices[0].fields.reserved: must be a string of pairs of hexadecimal digits");
  EXPECT_EQ(complaint(with_field(R"("reserved": 0)")),
            "controllers.devices[0].fields.reserved: must be a string of pairs of hexadecimal digits");
  EXPECT_EQ(complaint(with_field(R"("reserved": ")" + std::string(514, '0') + '"')),
            "controllers.devices[0].fields.reserved: is 257 bytes long: at most 256 fit");
}

TEST(Inventory, RefusesUnknownAndRepeatedKeys) {
  EXPECT_EQ(complaint(R"({"format": 2, "toasters": {}})"), "toasters: is not a key of this object");
  EXPECT_EQ(complaint(controllers(R"("sate": 2)")), "controllers.sate: is not a key of this object");
  EXPECT_EQ(complaint(controllers(R"("devices": [{"field": {}}])")),
            "controllers.devices[0].field: is not a key of this object");
  EXPECT_EQ(complaint(with_field(R"("vendr": "x")")),
            "controllers.devices[0].fields.vendr: is not a field of this object");
  EXPECT_EQ(complaint(with_field(R"("vendor_hexa": "x")")),
            "controllers.devices[0].fields.vendor_hexa: is not a field of this object");
  EXPECT_EQ(complaint(with_field(R"("index": 1, "index": 2)")),
            "kinds[0].devices[0].fields.index: this key stands twice in one object");
}

TEST(Inventory, RefusesAnyOtherFormat) {
  EXPECT_EQ(complaint("{}"), "format: must be 2");
  EXPECT_EQ(complaint(R"({"format": 1})"), "format: must be 2");
  EXPECT_EQ(complaint(R"({"format": "2"})"), "format: must be 2");
}

TEST(Inventory, RefusesKindsThatAreNoneOrStandTwice) {
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [{}]})"), "kinds[0]: has no key \"kind\"");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [{"kind": "toasters"}]})"),
            "kinds[0].kind: is not the name of a kind of device");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [{"kind": 1}]})"),
            "kinds[0].kind: is not the name of a kind of device");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [{"kind": "expanders"}]})"), "expanders: this kind has no store file");
  EXPECT_EQ(complaint(R"({"format": 2, "kinds": [{"kind": "bbus"}, {"kind": "bbus"}]})"),
            "kinds[1]: bbus stand twice in this inventory");
  EXPECT_EQ(complaint(controllers(R"("status": "good")")), "controllers.status: is not a status of a kind");
}

TEST(Inventory, MakesAMissingFileToLockAWholeStore) {
  const auto raid = parse_inventory(R"({"format": 2, "kinds": [{"kind": "drives"}, {"kind": "bbus"}]})").stores;
  const auto nvme = parse_inventory(R"({"format": 2, "kinds": [{"kind": "nvme-drives"}]})").stores;

  ASSERT_EQ(raid.size(), 3u);
  EXPECT_EQ(raid[0].path, "/var/storctlr_info");
  EXPECT_EQ(Bytes(raid[0].bytes), Bytes::hex("02"));
  EXPECT_TRUE(raid[0].only_if_missing);
  EXPECT_FALSE(raid[1].only_if_missing);
  ASSERT_EQ(nvme.size(), 2u);
  EXPECT_EQ(nvme[0].path, "/var/nvmectlr_info");
  EXPECT_EQ(Bytes(nvme[0].bytes), Bytes::hex("04"));
}

TEST(Inventory, OmitsKindsWhoseDevicesAreNotThoseOfAWholeStore) {
  const auto inventory = parse_inventory(R"({"format": 2, "kinds": [
      {"kind": "controllers", "status": "damaged", "error": "it is cut", "devices": [{}]},
      {"kind": "expanders", "status": "simulated", "error": null, "devices": [{}]}]})");

  EXPECT_TRUE(inventory.stores.empty());
  EXPECT_EQ(inventory.omissions,
            (std::vector<std::string>{"controllers: not written, since they are damaged: it is cut",
                                      "expanders: not written, since they are simulated"}));
}

ShownJson devices_of(const ShownJson &inventory, const mcstore::Kind &kind) {
  const ShownJson kinds = inventory["kinds"];
  for (size_t i = 0; i < kinds.size(); ++i)
    if (kinds[i]["kind"] == std::string(kind.name)) return kinds[i]["devices"];
  return ShownJson("[]");
}

// Texts may be empty everywhere, and bytes unused. Each other field has a value somewhere, in both.
TEST(Inventory, OfTheExamplesLeavesNothingOutButTextsAndBytes) {
  for (const char *name : {"inventory.json", "inventory-later.json"}) {
    std::ifstream file(std::string(PROJECT_DIRECTORY "/docs/examples/") + name);
    const ShownJson inventory(std::string(std::istreambuf_iterator<char>(file), {}));

    for (const mcstore::Kind &kind : mcstore::kinds()) {
      if (kind.store_path.empty()) continue;
      const ShownJson devices = devices_of(inventory, kind);
      std::set<std::string> keys;
      for (size_t i = 0; i < devices.size(); ++i)
        for (const std::string &key : devices[i]["fields"].keys()) keys.insert(key);
      for (const mcserver::Field &field : kind.fields) {
        if (field.type == mcserver::FieldType::kText || field.type == mcserver::FieldType::kBytes) continue;
        EXPECT_TRUE(keys.contains(mcstore::key_of(field))) << name << ", " << kind.name << ": " << field.name;
      }
    }
  }
}

}  // namespace
}  // namespace tests
