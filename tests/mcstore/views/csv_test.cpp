#include "mcstore/views/csv.h"

#include <gmock/gmock.h>

#include <pugixml.hpp>

#include "mcstore/inventories.h"
#include "mcstore/views/xml.h"

namespace tests {
namespace {

using mcstore::Column;
using mcstore::Health;

// The values of these columns, without the end of the line.
std::string csv(const RecordOf &record, const std::vector<std::string> &words) {
  std::vector<Column> columns;
  for (const std::string &word : words) columns.push_back(*find_column(record.kind(), word));
  const std::string line = csv_line(record.device(), Health::kOk, columns);
  return line.substr(0, line.size() - 2);
}

TEST(Csv, BeginsWithTheNamesOfTheColumns) {
  const mcstore::Kind &kind = mcstore::kind_named("nvme-controllers");

  EXPECT_THAT(csv_header(every_column(kind)), testing::StartsWith("device,health,controller_name,mod_timestamp,"));
  EXPECT_THAT(csv_header(every_column(kind)), testing::EndsWith(",link_status\r\n"));
}

TEST(Csv, HasNumbersAsTheyAre) {
  const RecordOf record = RecordOf("drives")
                              .number("raw_size", 4096)
                              .number("link_speed", 4)
                              .number("fault", 1)
                              .number("pd_sed_state", 255);

  EXPECT_EQ(csv(record, {"device", "health", "raw_size", "link_speed", "fault", "pd_sed_state"}),
            "c0/e0/s0,OK,4096,4,1,0xff");
  EXPECT_EQ(csv(RecordOf("controllers").number("mod_timestamp", 0xFFFFFFFF), {"mod_timestamp"}), "-1");
}

TEST(Csv, IsEmptyWhereThereIsNone) {
  EXPECT_EQ(csv(RecordOf("drives").number("percentage_life", 255), {"temperature", "percentage_life"}), ",");
  EXPECT_EQ(csv(RecordOf("bbus"), {"capacitance", "device"}), ",bbu c0");
}

TEST(Csv, HasTheEntriesThatCount) {
  const RecordOf volume = RecordOf("virtual-drives").number("num_physical_drives", 2).number("pd", 0x0201);

  EXPECT_EQ(csv(volume, {"pd", "hot_spares"}), "1/2 0/0,");
}

TEST(Csv, QuotesWhatWouldEndAValue) {
  const auto model = [](const std::string &text) {
    return csv(RecordOf("drives").text("product_id", text), {"model"});
  };

  EXPECT_EQ(model("a,b"), "\"a,b\"");
  EXPECT_EQ(model("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(model("a b"), "a b");
  EXPECT_EQ(model("a\r\nb"), "a\\x0d\\x0ab");
}

TEST(Csv, TellsEscapesFromTexts) {
  const auto model = [](const std::string &text) {
    return csv(RecordOf("drives").text("product_id", text), {"model"});
  };

  EXPECT_EQ(model("a\\x1b"), "a\\\\x1b");
  EXPECT_EQ(model("a\x1b"), "a\\x1b");
  EXPECT_EQ(model("\x7f\xc2\x9b\xff"), "\\x7f\\xc2\\x9b\\xff");
  EXPECT_EQ(model("\u202e\ufe0f"), "\\xe2\\x80\\xae\\xef\\xb8\\x8f");
}

TEST(Csv, HasUtf8InEveryLocale) {
  for (const char *locale : {"C", "C.UTF-8"}) {
    const InLocale scope(locale);

    EXPECT_EQ(csv(RecordOf("drives").text("product_id", "\u00e9\u6f22"), {"model"}), "\u00e9\u6f22") << locale;
  }
}

TEST(Csv, HasNoFormula) {
  const auto model = [](const std::string &text) {
    return csv(RecordOf("drives").text("product_id", text), {"model"});
  };

  for (const char *text : {"=1", "+1", "-1", "@A"}) EXPECT_EQ(model(text), std::string("'") + text);
  EXPECT_EQ(model("=A,\"B\""), "\"'=A,\"\"B\"\"\"");
  EXPECT_EQ(model("1=1"), "1=1");
}

// ---------------------------------------------------------------------------------------------------------- XML

TEST(Xml, HasEveryFieldWithItsTextAndItsValue) {
  mcstore::KindInventory inventory = inventory_of("drives", {RecordOf("drives").number("link_speed", 4)});
  inventory.store = {.path = "/var/x", .modified = {}, .size = 457, .announced = 1, .records = 1, .left_over = 0};
  const std::string text = mcstore::xml_begin("/root") + xml_kind_begin(inventory) +
                           xml_device(inventory.device(0), {.health = Health::kWarning, .reasons = {"a < b"}}) +
                           mcstore::xml_kind_end() + mcstore::xml_end();

  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(text.c_str())) << text;

  const pugi::xml_node root = document.child("inventory");
  EXPECT_STREQ(root.attribute("format").value(), "2");
  EXPECT_STREQ(root.attribute("root").value(), "/root");
  EXPECT_STREQ(root.child("kind").attribute("status").value(), "fine");
  EXPECT_STREQ(root.child("kind").child("store").attribute("size").value(), "457");
  const pugi::xml_node device = root.child("kind").child("device");
  EXPECT_STREQ(device.attribute("name").value(), "c0/e0/s0");
  EXPECT_STREQ(device.attribute("health").value(), "WARNING");
  EXPECT_STREQ(device.child_value("reason"), "a < b");
  const pugi::xml_node link = device.find_child_by_attribute("name", "link_speed");
  EXPECT_STREQ(link.attribute("text").value(), "12 Gb/s");
  EXPECT_STREQ(link.child_value(), "4");
  EXPECT_STREQ(device.find_child_by_attribute("name", "temperature").child_value(), "");
}

TEST(Xml, RefersToCharactersAndEscapesOtherBytes) {
  EXPECT_EQ(mcstore::xml_text("a<b>&\"'"), "a&#x3c;b&#x3e;&#x26;&#x22;'");
  EXPECT_EQ(mcstore::xml_text("\xc3\xa9\n\x7f"), "&#xe9;&#xa;&#x7f;");
  EXPECT_EQ(mcstore::xml_text("\x1b\xff\xef\xbf\xbe"), "\\x1b\\xff\\xef\\xbf\\xbe");
}

}  // namespace
}  // namespace tests
