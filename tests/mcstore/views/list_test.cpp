#include "mcstore/views/list.h"

#include <gmock/gmock.h>

#include "mcstore/inventories.h"
#include "mcstore/views/rows.h"

namespace tests {
namespace {

using mcstore::Judge;
using mcstore::KindInventory;
using mcstore::KindStatus;
using testing::HasSubstr;

RecordOf listed_drive(uint64_t slot, const std::string &model) {
  return RecordOf("drives").number("slot_num", slot).number("raw_size", 1024 * slot).text("product_id", model);
}

std::string list(const std::vector<RecordOf> &records, const mcstore::TableStyle &style,
                 const std::vector<std::string> &words = {"device", "model", "size"}) {
  const KindInventory inventory = inventory_of("drives", records);
  std::vector<mcstore::Column> columns;
  std::vector<size_t> positions;
  for (const std::string &word : words) columns.push_back(*find_column(*inventory.kind, word));
  for (size_t i = 0; i < inventory.size(); ++i) positions.push_back(i);
  return device_list(inventory, positions, columns, Judge({}), style);
}

TEST(List, HasALineForEachDevice) {
  EXPECT_EQ(list({listed_drive(1, "A"), listed_drive(100, "LONGER")}, {}),
            "DEVICE     MODEL       SIZE\n"
            "c0/e0/s1   A        1.0 KiB\n"
            "c0/e0/s100 LONGER 100.0 KiB\n");
}

TEST(List, MayBeWithoutHeadings) {
  EXPECT_EQ(list({listed_drive(1, "A")}, {.has_header = false}), "c0/e0/s1 A 1.0 KiB\n");
}

TEST(List, IsCutToTheTerminalAlone) {
  const std::string model = "A-MODEL-OF-16-CH";

  const std::string whole = list({listed_drive(1, model)}, {});
  const std::string cut = list({listed_drive(1, model)}, {.width = 25});

  EXPECT_THAT(whole, HasSubstr(model));
  EXPECT_THAT(cut, testing::Not(HasSubstr(model)));
  EXPECT_THAT(cut, HasSubstr("c0/e0/s1 A-MODEL"));
  EXPECT_THAT(cut, HasSubstr(" 1.0 KiB\n"));
}

TEST(List, ColoursHealthAlone) {
  const std::string text =
      list({listed_drive(1, "A").number("fault", 1)}, {.has_colour = true, .has_header = false}, {"device", "health"});

  EXPECT_EQ(text, "c0/e0/s1 \033[1;31mCRITICAL\033[0m\n");
}

TEST(List, AlignsWideCharactersByTheirWidth) {
  const InLocale scope("C.UTF-8");

  EXPECT_EQ(list({listed_drive(1, "\xe6\xbc\xa2"), listed_drive(2, "ab")}, {.has_header = false}),
            "c0/e0/s1 \xe6\xbc\xa2 1.0 KiB\n"
            "c0/e0/s2 ab 2.0 KiB\n");
}

// ------------------------------------------------------------------------------------------------------- titles

TEST(Title, SaysHowManyThereAreAndTheState) {
  KindInventory controllers = inventory_of("controllers", {RecordOf("controllers")});
  controllers.state = 2;

  EXPECT_EQ(title_lines(controllers, 1), "RAID controllers: 1, subsystem ready\n");
  EXPECT_EQ(title_lines(controllers, 0), "RAID controllers: 0 of 1, subsystem ready\n");
}

TEST(Title, SaysWhatIsWrong) {
  KindInventory drives = inventory_of("drives", {RecordOf("drives")});
  drives.error = "the reason";
  const auto title = [&](KindStatus status) {
    drives.status = status;
    return title_lines(drives, drives.size());
  };

  EXPECT_EQ(title(KindStatus::kAbsent), "Physical drives: none\n");
  EXPECT_EQ(title(KindStatus::kUnreadable), "Physical drives: unreadable\n  the reason\n");
  EXPECT_EQ(title(KindStatus::kDamaged), "Physical drives: 1\n  damaged: the reason\n");
  EXPECT_EQ(title(KindStatus::kSimulated), "Physical drives: 1\n  simulated: the reason\n");
  drives.notes = {"unclear"};
  EXPECT_EQ(title(KindStatus::kFine), "Physical drives: 1\n  note: unclear\n");
}

// --------------------------------------------------------------------------------------------------------- rows

TEST(Rows, BeginWithHealthAndItsReasons) {
  const RecordOf record = listed_drive(1, "A");

  const std::string text =
      device_rows(record.device(), {.health = mcstore::Health::kWarning, .reasons = {"why"}, .notes = {"more"}}, {});

  EXPECT_EQ(text.substr(0, text.find("\ncontroller_index")),
            "FIELD                        VALUE\n"
            "device                       c0/e0/s1\n"
            "health                       WARNING\n"
            "reason                       why\n"
            "note                         more\n"
            "place                        enclosure 0, slot 1");
}

TEST(Rows, HaveEveryFieldWithWordsAndUnits) {
  const std::string text = device_rows(listed_drive(1, "A").number("link_speed", 4).device(), {}, {});

  for (const mcserver::Field &field : mcstore::kind_named("drives").fields)
    EXPECT_THAT(text, HasSubstr("\n" + std::string(field.name) + " ")) << field.name;
  EXPECT_THAT(text, HasSubstr("\nlink_speed                   12 Gb/s\n"));
  EXPECT_THAT(text, HasSubstr("\nraw_size                     1.0 KiB\n"));
  EXPECT_THAT(text, HasSubstr("\ntemperature                  none\n"));
}

TEST(Rows, HaveTheEntriesOfArraysAndTheirBytes) {
  RecordOf volume = RecordOf("virtual-drives").number("num_physical_drives", 2).number("pd", 0x0201);

  const std::string text = device_rows(volume.device(), {}, {});

  EXPECT_THAT(text, HasSubstr("\npd[0]                              controller_index 1, slot_number 2\n"));
  EXPECT_THAT(text, HasSubstr("\npd[1]                              controller_index 0, slot_number 0\n"));
  EXPECT_THAT(text, HasSubstr("\nhot_spares                         none\n"));
  EXPECT_THAT(device_rows(RecordOf("controllers").device(), {}, {}), HasSubstr(" 256 bytes, all 0\n"));
}

}  // namespace
}  // namespace tests
