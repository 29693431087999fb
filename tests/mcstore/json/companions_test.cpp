#include <gtest/gtest.h>

#include "host/bytes.h"
#include "mcstore/json/store_content.h"
#include "raid/controllers/controller_bytes.h"

namespace tests {
namespace {

using mcstore::parse_inventory;

// The store file of a controller with these fields, or what is wrong with them.
Bytes stored(const std::string &fields) {
  const std::string json =
      R"({"format": 2, "kinds": [{"kind": "controllers", "devices": [{"fields": {)" + fields + "}}]}]}";
  return Bytes(parse_inventory(json).stores.at(0).bytes);
}
std::string refusal_of_fields(const std::string &fields) {
  try {
    stored(fields);
  } catch (const mcstore::InventoryError &error) {
    return error.what();
  }
  return "(accepted)";
}

// Where they are in the store file, which begins with a header of one byte.
Bytes slot_name(const Bytes &store) { return store.slice(18, 6); }
Bytes vendor_id(const Bytes &store) { return store.slice(256, 2); }
Bytes patrol_read_percent(const Bytes &store) { return store.slice(818, 1); }
Bytes is_supported(const Bytes &store) { return store.slice(105, 1); }

TEST(Companions, HexadecimalNumbersAreTakenAsStringsAndAsNumbers) {
  EXPECT_EQ(vendor_id(stored(R"("vendor_id": "0x1A2b")")), Bytes::hex("2b 1a"));
  EXPECT_EQ(vendor_id(stored(R"("vendor_id": 6699)")), Bytes::hex("2b 1a"));
}

TEST(Companions, StringsThatAreNoNumbersAreRefused) {
  const std::string problem =
      "controllers.devices[0].fields.vendor_id: must be a whole number, or a string such as \"0x1000\"";
  for (const char *text : {"", "0x", "1000", "0x12g", "0x-1", "-0x1", "0x11112222333344445"})
    EXPECT_EQ(refusal_of_fields(R"("vendor_id": ")" + std::string(text) + '"'), problem) << text;
  EXPECT_EQ(refusal_of_fields(R"("vendor_id": "0x10000")"),
            "controllers.devices[0].fields.vendor_id: 65536 does not fit: from 0 to 65535 does");
  EXPECT_EQ(refusal_of_fields(R"("index": "0x1")"), "controllers.devices[0].fields.index: must be a whole number");
}

TEST(Companions, NullIsTheFirstNoneValueOrZero) {
  EXPECT_EQ(patrol_read_percent(stored(R"("patrol_read_percent_complete": null)")), Bytes::hex("ff"));
  EXPECT_EQ(vendor_id(stored(R"("vendor_id": null)")), Bytes::hex("00 00"));
  EXPECT_EQ(slot_name(stored(R"("smbios_pcislotname": null)")), Bytes::repeated(6, 0));
}

TEST(Companions, TheNumberBehindANullGoesBeforeIt) {
  EXPECT_EQ(vendor_id(stored(R"("vendor_id": null, "vendor_id_none": "0x12")")), Bytes::hex("12 00"));
  EXPECT_EQ(vendor_id(stored(R"("vendor_id_none": 18, "vendor_id": null)")), Bytes::hex("12 00"));
  EXPECT_EQ(refusal_of_fields(R"("vendor_none": 1)"),
            "controllers.devices[0].fields.vendor_none: belongs to a field that is no number");
}

TEST(Companions, TheBytesGoBeforeEverything) {
  EXPECT_EQ(slot_name(stored(R"("smbios_pcislotname_hex": "41ff00424300", "smbios_pcislotname": "A")")),
            Bytes::hex("41 ff 00 42 43 00"));
  EXPECT_EQ(vendor_id(stored(R"("vendor_id_hex": "0102", "vendor_id": null, "vendor_id_none": 7)")),
            Bytes::hex("01 02"));
  EXPECT_EQ(slot_name(stored(R"("smbios_pcislotname": "ABCDEF", "smbios_pcislotname_hex": "30")")),
            Bytes::hex("30 00 00 00 00 00"));
  // Characters that stand for bytes that are no UTF-8 are longer than these.
  EXPECT_EQ(slot_name(stored(R"("smbios_pcislotname": "\ufffd\ufffd\ufffd", "smbios_pcislotname_hex": "ffffff")")),
            Bytes::hex("ff ff ff 00 00 00"));
  EXPECT_EQ(refusal_of_fields(R"("vendor_id_hex": "010203")"),
            "controllers.devices[0].fields.vendor_id_hex: is 3 bytes long: at most 2 fit");
}

TEST(Companions, WordsSayNothingNew) {
  EXPECT_EQ(stored(R"("controller_status": 1, "controller_status_text": "optimal")"),
            stored(R"("controller_status": 1)"));
}

TEST(Companions, FlagsAreTrueFalseOrANumber) {
  EXPECT_EQ(is_supported(stored(R"("is_supported": true)")), Bytes::hex("01"));
  EXPECT_EQ(is_supported(stored(R"("is_supported": false)")), Bytes::hex("00"));
  EXPECT_EQ(is_supported(stored(R"("is_supported": 255)")), Bytes::hex("ff"));
}

// What a reader skips may be in an inventory that somebody has made: what the tool itself writes is.
TEST(Companions, OfTheDocumentAreTakenAsTheyAre) {
  const auto inventory = parse_inventory(
      R"({"format": 2, "tool": {}, "time": "", "root": "/", "kinds": [
          {"kind": "controllers", "status": "fine", "error": null, "notes": [], "state": 2, "state_text": "ready",
           "store": null, "devices": [{"device": "c0", "health": "OK", "reasons": [], "notes": []}]},
          {"kind": "bbus", "status": "absent", "state": null, "devices": []},
          {"kind": "expanders", "status": "absent"},
          {"kind": "nvme-drives", "status": "unreadable"}]})");

  ASSERT_EQ(inventory.stores.size(), 1u);
  EXPECT_EQ(Bytes(inventory.stores[0].bytes), Bytes::hex("02") + Bytes::repeated(kControllerSize, 0));
}

}  // namespace
}  // namespace tests
