#include "mcstore/views/json_device.h"

#include <gtest/gtest.h>

#include "host/bytes.h"
#include "mcstore/json/inventory_format.h"
#include "mcstore/shown_json.h"

namespace tests {
namespace {

using mcstore::Kind;

// The fields of a record that is zero but for these bytes, as the view shows them. What the store file holds is the
// same, if it is not given.
ShownJson fields_of(const char *kind_name, const Bytes &record, const Bytes *stored = nullptr) {
  const Kind &kind = mcstore::kind_named(kind_name);
  const Bytes &file = stored ? *stored : record;
  std::string text;
  mcstore::JsonWriter json(text, mcstore::JsonWriter::Layout::kIndented);
  mcstore::write_fields(json, {kind, 0, {record.data(), record.size()}, {file.data(), file.size()}});
  return ShownJson(text);
}

Bytes zero(const char *kind_name) { return Bytes::repeated(mcstore::kind_named(kind_name).record_size, 0); }

size_t offset_of(const char *kind_name, const char *field) {
  const auto fields = mcstore::kind_named(kind_name).fields;
  return fields[mcserver::find_row(fields, field)].offset;
}

Bytes drive_with(const char *field, const Bytes &bytes) {
  return zero("drives").put(offset_of("drives", field), bytes);
}

TEST(JsonFields, FlagsAreTrueFalseOrTheirNumber) {
  EXPECT_EQ(fields_of("drives", drive_with("fault", Bytes::hex("00")))["fault"], false);
  EXPECT_EQ(fields_of("drives", drive_with("fault", Bytes::hex("01")))["fault"], true);
  EXPECT_EQ(fields_of("drives", drive_with("fault", Bytes::hex("80")))["fault"], 128);
}

TEST(JsonFields, IdentifiersAndBitSetsAreStringsInHexadecimal) {
  const ShownJson fields =
      fields_of("drives", drive_with("enclosure_sas_address[1]", Bytes::hex("02 00 00 00 00 00 00 50")));

  EXPECT_EQ(fields["enclosure_sas_address_0"], "0x0");
  EXPECT_EQ(fields["enclosure_sas_address_1"], "0x5000000000000002");
  EXPECT_EQ(fields["pd_sed_state"], "0x0");
}

TEST(JsonFields, CodesHaveTheirWordsBesideThem) {
  const ShownJson fields = fields_of("drives", drive_with("power_state", Bytes::hex("01")));

  EXPECT_EQ(fields["power_state"], 1);
  EXPECT_EQ(fields["power_state_text"], "powersave");
  EXPECT_FALSE(fields_of("drives", drive_with("power_state", Bytes::hex("77"))).contains("power_state_text"));
}

TEST(JsonFields, WhatMeansNothingIsNullAndItsNumberBesideIt) {
  const ShownJson valid = fields_of(
      "drives", drive_with("temperature", Bytes::hex("28")).put(offset_of("drives", "temp_valid"), Bytes::hex("01")));
  const ShownJson invalid = fields_of("drives", drive_with("temperature", Bytes::hex("28")));

  EXPECT_EQ(valid["temperature"], 40);
  EXPECT_EQ(invalid["temperature"].text(), "null");
  EXPECT_EQ(invalid["temperature_none"], 40);
  EXPECT_FALSE(fields_of("drives", zero("drives")).contains("temperature_none"));
}

TEST(JsonFields, OfSeveralNoneValuesTheFirstNeedsNoNumber) {
  const size_t threshold = offset_of("nvme-drives", "throttle_threshold");

  const ShownJson first = fields_of("nvme-drives", zero("nvme-drives"));
  const ShownJson second = fields_of("nvme-drives", zero("nvme-drives").put(threshold, Bytes::hex("ff")));

  EXPECT_EQ(first["throttle_threshold"].text(), "null");
  EXPECT_FALSE(first.contains("throttle_threshold_none"));
  EXPECT_EQ(second["throttle_threshold_none"], 255);
}

TEST(JsonFields, TextsHaveTheirBytesBesideThemWhereTheyDoNotTellAll) {
  const ShownJson plain = fields_of("drives", drive_with("vendor", Bytes::hex("41 42")));
  const ShownJson trailing = fields_of("drives", drive_with("vendor", Bytes::hex("41 00 42")));
  const ShownJson other = fields_of("drives", drive_with("vendor", Bytes::hex("41 ff")));

  EXPECT_EQ(plain["vendor"], "AB");
  EXPECT_FALSE(plain.contains("vendor_hex"));
  EXPECT_EQ(trailing["vendor"], "A");
  EXPECT_EQ(trailing["vendor_hex"].text().substr(0, 9), "\"41004200");
  EXPECT_EQ(other["vendor"], "A\ufffd");
  EXPECT_EQ(other["vendor_hex"].text().substr(0, 7), "\"41ff00");
}

TEST(JsonFields, ArraysHaveTheirBytesBesideThemWhereMoreFollowsThanCounts) {
  const size_t count = offset_of("virtual-drives", "num_physical_drives");
  const size_t members = offset_of("virtual-drives", "pd");
  const Bytes two = zero("virtual-drives").put(members, Bytes::hex("01 02 03 04"));

  const ShownJson both = fields_of("virtual-drives", Bytes(two).put(count, Bytes::hex("02")));
  const ShownJson one = fields_of("virtual-drives", Bytes(two).put(count, Bytes::hex("01")));

  EXPECT_EQ(both["pd"].text(), R"([{"controller_index":1,"slot_number":2},{"controller_index":3,"slot_number":4}])");
  EXPECT_FALSE(both.contains("pd_hex"));
  EXPECT_EQ(one["pd"].size(), 1u);
  EXPECT_EQ(one["pd_hex"].text().substr(0, 9), "\"01020304");
}

TEST(JsonFields, WhatThePluginHasCompletedHasTheBytesOfTheFile) {
  const Bytes stored = zero("bbus");
  const Bytes completed = zero("bbus").put(offset_of("bbus", "tfm_vendor"), Bytes::hex("41"));

  const ShownJson fields = fields_of("bbus", completed, &stored);

  EXPECT_EQ(fields["tfm_vendor"], "A");
  EXPECT_EQ(fields["tfm_vendor_hex"].text().find_first_not_of("\"0"), std::string::npos);
  EXPECT_FALSE(fields.contains("tfm_model_hex"));
}

// Otherwise a companion could be taken for another field, or the other way round.
TEST(JsonFields, NoKeyEndsLikeACompanion) {
  for (const Kind &kind : mcstore::kinds())
    for (const mcserver::Field &field : kind.fields)
      for (const std::string_view suffix : {mcstore::kWordSuffix, mcstore::kNoneSuffix, mcstore::kHexSuffix})
        EXPECT_FALSE(mcstore::key_of(field).ends_with(suffix)) << kind.name << ": " << field.name;
}

}  // namespace
}  // namespace tests
