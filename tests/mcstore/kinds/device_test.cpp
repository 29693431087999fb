#include "mcstore/kinds/device.h"

#include <gtest/gtest.h>

#include <optional>

#include "mcstore/inventories.h"

namespace tests {
namespace {

RecordOf drive_record() {
  return RecordOf("drives")
      .number("controller_index", 1)
      .number("enclosure_device_id", 62)
      .number("slot_num", 3)
      .text("product_id", "MODEL")
      .text("serial_num", "S-1");
}

TEST(Device, HasANameAPlaceAndAModel) {
  const RecordOf record = drive_record();

  EXPECT_EQ(record.device().name(), "c1/e62/s3");
  EXPECT_EQ(record.device().place(), "enclosure 62, slot 3");
  EXPECT_EQ(record.device().model(), "MODEL");
}

TEST(Device, HasAPrefixWhereKindsWouldHaveTheSameName) {
  const RecordOf volume = RecordOf("virtual-drives").number("controller_index", 1).number("target_id", 2);
  const RecordOf expander("expanders");

  EXPECT_EQ(volume.device().name(), "vd c1/2");
  EXPECT_EQ(mcstore::Device(expander.kind(), 7, expander.span(), expander.span()).name(), "expander 7");
}

TEST(Device, IsCalledByItsNameOrATextOfItsOwn) {
  const RecordOf drive = drive_record();
  const RecordOf volume = RecordOf("virtual-drives").text("guid", "G-1");

  EXPECT_TRUE(drive.device().is_called("c1/e62/s3"));
  EXPECT_TRUE(drive.device().is_called("S-1"));
  EXPECT_FALSE(drive.device().is_called("s-2"));
  EXPECT_FALSE(drive.device().is_called("1"));  // its controller's number
  EXPECT_TRUE(volume.device().is_called("vd c0/0"));
  EXPECT_TRUE(volume.device().is_called("c0/0"));
  EXPECT_TRUE(volume.device().is_called("G-1"));
}

TEST(Device, IsCalledByNoWordWhenItsTextIsEmpty) { EXPECT_FALSE(RecordOf("drives").device().is_called("")); }

TEST(Device, TellsItselfFromOthersOfItsKind) {
  const std::string identity = drive_record().device().identity();

  EXPECT_EQ(drive_record().text("product_id", "OTHER").device().identity(), identity);
  EXPECT_NE(drive_record().text("serial_num", "S-2").device().identity(), identity);
  EXPECT_NE(drive_record().number("slot_num", 4).device().identity(), identity);
}

TEST(Device, KnowsAFieldOnlyWhereAnotherSaysSo) {
  const RecordOf without = drive_record().number("temperature", 31);
  const RecordOf with = drive_record().number("temperature", 31).number("temp_valid", 1);
  const mcstore::Field &temperature = *without.device().find("temperature");

  EXPECT_EQ(without.device().number(temperature), std::nullopt);
  EXPECT_EQ(without.device().text(temperature), "none");
  EXPECT_EQ(with.device().number(temperature), 31);
  EXPECT_EQ(with.device().text(temperature), "31 C");
}

TEST(Device, KnowsAFieldOnlyWhereATextBeginsSo) {
  const RecordOf plain = RecordOf("nvme-controllers").text("controller_type", "NVME-CTLR").text("product_id", "P");
  const RecordOf a_switch =
      RecordOf("nvme-controllers").text("controller_type", "NVME-MSWITCH-2").text("product_id", "P");

  EXPECT_EQ(plain.device().text("product_id"), "none");
  EXPECT_EQ(a_switch.device().text("product_id"), "P");
}

TEST(Device, KnowsNoValueThatStandsForNone) {
  const RecordOf record = drive_record().number("percentage_life", 255);

  EXPECT_FALSE(record.device().is_known(*record.device().find("percentage_life")));
  EXPECT_EQ(record.device().text("percentage_life"), "none");
}

TEST(Device, HasTheFieldsOfItsVariant) {
  const RecordOf battery("bbus");
  const RecordOf capacitor = RecordOf("bbus").number("capacitor", 1);

  EXPECT_NE(battery.device().find("retention_time"), nullptr);
  EXPECT_EQ(battery.device().find("capacitance"), nullptr);
  EXPECT_EQ(capacitor.device().find("retention_time"), nullptr);
  EXPECT_NE(capacitor.device().find("capacitance"), nullptr);
  EXPECT_EQ(battery.device().text("capacitance"), "");
}

TEST(Device, HasTheEntriesThatCount) {
  RecordOf volume = RecordOf("virtual-drives").number("num_physical_drives", 9);
  const mcstore::Field &members = *volume.device().find("pd");

  EXPECT_EQ(volume.device().entries(members).size(), 8u);  // for more there is no room
  EXPECT_EQ(volume.device().text(members), "0/0, 0/0, 0/0, 0/0, 0/0, 0/0, 0/0, 0/0, ... 9 in all");
  EXPECT_EQ(volume.number("num_physical_drives", 2).device().text(members), "0/0, 0/0");
}

TEST(Kind, HasTheFieldsOfEveryVariantOnce) {
  const std::vector<const mcstore::Field *> fields = every_field(mcstore::kind_named("bbus"));

  const auto count = [&](std::string_view name) {
    return std::ranges::count_if(fields, [&](const mcstore::Field *field) { return field->name == name; });
  };
  EXPECT_EQ(count("retention_time"), 1);
  EXPECT_EQ(count("capacitance"), 1);
  EXPECT_EQ(count("design_capacity"), 1);
  EXPECT_EQ(count("controller_index"), 1);
}

}  // namespace
}  // namespace tests
