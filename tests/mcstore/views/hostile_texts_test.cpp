// Whatever a text of a device holds, nothing that is shown of it disturbs a terminal or another value.

#include <gmock/gmock.h>

#include <algorithm>
#include <pugixml.hpp>

#include "mcstore/inventories.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/views/csv.h"
#include "mcstore/views/list.h"
#include "mcstore/views/rows.h"
#include "mcstore/views/xml.h"

namespace tests {
namespace {

using mcstore::Judge;
using mcstore::KindInventory;

// A device of that kind, all of whose texts are hostile.
RecordOf hostile_record(const std::string &kind) { return RecordOf(kind).every_text(kHostile); }

bool is_harmless(std::string_view text, std::string_view allowed) {
  return std::ranges::all_of(text,
                             [&](char c) {
                               return (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) ||
                                      allowed.find(c) != allowed.npos;
                             }) &&
         text.find("\xe2\x80\xae") == text.npos && text.find('\xff') == text.npos;
}

size_t lines_in(const std::string &text) { return static_cast<size_t>(std::ranges::count(text, '\n')); }

class HostileTexts : public testing::TestWithParam<const char *> {
 protected:
  std::vector<RecordOf> records() const {
    std::vector<RecordOf> all;
    for (const mcstore::Kind &kind : mcstore::kinds()) all.push_back(hostile_record(std::string(kind.name)));
    all.push_back(RecordOf("bbus").number("capacitor", 1).every_text(kHostile));
    all.push_back(RecordOf("nvme-controllers").every_text(std::string("NVME-MSWITCH") + kHostile));
    return all;
  }

  const InLocale locale{GetParam()};
  const Judge judge{{}};
};

TEST_P(HostileTexts, ChangeNoTable) {
  for (const RecordOf &record : records()) {
    const KindInventory inventory = inventory_of(std::string(record.kind().name), {record, record});

    const std::string text =
        device_list(inventory, {0, 1}, mcstore::all_columns(record.kind()), judge, mcstore::TableStyle());

    EXPECT_TRUE(is_harmless(text, "\n")) << text;
    EXPECT_EQ(lines_in(text), 3u) << text;
  }
}

TEST_P(HostileTexts, ChangeNoRows) {
  for (const RecordOf &record : records()) {
    const std::string text = device_rows(record.device(), judge.judge(record.device()), mcstore::TableStyle());
    const std::string plain =
        device_rows(record.device(), {.health = mcstore::Health::kOk}, mcstore::TableStyle{.has_header = false});

    EXPECT_TRUE(is_harmless(text, "\n")) << text;
    EXPECT_GE(lines_in(plain), 3 + record.device().fields().size()) << plain;
  }
}

TEST_P(HostileTexts, ChangeNoCsv) {
  for (const RecordOf &record : records()) {
    const std::string line = csv_line(record.device(), mcstore::Health::kOk, mcstore::every_column(record.kind()));

    EXPECT_TRUE(is_harmless(line, "\r\n")) << line;
    EXPECT_EQ(lines_in(line), 1u);
    EXPECT_EQ(line.find('\r'), line.size() - 2);
  }
}

TEST_P(HostileTexts, ChangeNoXml) {
  for (const RecordOf &record : records()) {
    KindInventory inventory = inventory_of(std::string(record.kind().name), {record});
    inventory.error = kHostile;
    inventory.notes = {kHostile};
    const std::string text = mcstore::xml_begin(kHostile) + xml_kind_begin(inventory) +
                             xml_device(inventory.device(0), judge.judge(inventory.device(0))) +
                             mcstore::xml_kind_end() + mcstore::xml_end();

    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.c_str())) << text;

    EXPECT_TRUE(is_harmless(text, "\n"));
    const pugi::xml_node device = document.child("inventory").child("kind").child("device");
    size_t position = 0;
    for (const pugi::xml_node field : device.children("field"))
      EXPECT_STREQ(field.attribute("name").value(), record.device().fields()[position++].name);
    EXPECT_EQ(position, record.device().fields().size());
  }
}

TEST_P(HostileTexts, ChangeNoTitle) {
  KindInventory inventory(mcstore::kind_named("drives"));
  inventory.status = mcstore::KindStatus::kDamaged;
  inventory.error = kHostile;
  inventory.notes = {kHostile};

  const std::string text = title_lines(inventory, 0);

  EXPECT_TRUE(is_harmless(text, "\n")) << text;
  EXPECT_EQ(lines_in(text), 3u);
}

TEST_P(HostileTexts, KeepUtf8WhereTheLocaleHasIt) {
  const bool is_utf8 = std::string(GetParam()) == "C.UTF-8";
  const RecordOf record = RecordOf("drives").text("product_id", "caf\xc3\xa9");
  const std::string expected = is_utf8 ? "caf\xc3\xa9" : "caf\\xc3\\xa9";

  EXPECT_THAT(device_list(inventory_of("drives", {record}), {0}, chosen_columns(record.kind()), judge, {}),
              testing::HasSubstr(expected));
  EXPECT_THAT(device_rows(record.device(), {}, {}), testing::HasSubstr(expected));
  EXPECT_THAT(csv_line(record.device(), {}, every_column(record.kind())), testing::HasSubstr("caf\xc3\xa9"));
  EXPECT_THAT(xml_device(record.device(), {}), testing::HasSubstr("caf&#xe9;"));
}

INSTANTIATE_TEST_SUITE_P(InLocales, HostileTexts, testing::Values("C", "C.UTF-8"),
                         [](const auto &instance) { return std::string(instance.param) == "C" ? "C" : "Utf8"; });

}  // namespace
}  // namespace tests
