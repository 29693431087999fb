#include "mcstore/views/columns.h"

#include <gmock/gmock.h>

#include "mcstore/inventories.h"
#include "mcstore/views/colour.h"

namespace tests {
namespace {

using mcstore::Column;
using mcstore::Health;
using mcstore::kind_named;

TEST(Columns, AreFieldsOfTheirKind) {
  for (const mcstore::Kind &kind : mcstore::kinds()) {
    const std::vector<Column> columns = chosen_columns(kind);

    EXPECT_EQ(columns.at(0).heading, "DEVICE");
    EXPECT_EQ(columns.at(1).heading, "HEALTH");
    for (size_t i = 2; i < columns.size(); ++i)
      EXPECT_NE(mcserver::find_row(kind.fields, columns[i].name), kind.fields.size()) << columns[i].name;
    EXPECT_EQ(columns.size() > 4, !kind.store_path.empty()) << kind.name;
  }
}

TEST(Columns, AreAllButBytesAndArraysWhenAllAreWanted) {
  const mcstore::Kind &kind = kind_named("virtual-drives");

  const std::vector<Column> columns = all_columns(kind);

  EXPECT_EQ(columns.size(), 2 + kind.fields.size() - 3);
  EXPECT_EQ(columns.back().name, "vd_sed_state");
  EXPECT_EQ(columns.back().heading, "VD_SED_STATE");
  EXPECT_EQ(every_column(kind).size(), 2 + kind.fields.size());
}

TEST(Columns, AreFoundByHeadingAndNameWhateverTheCase) {
  const mcstore::Kind &drives = kind_named("drives");
  const auto name = [&](const char *word) { return mcstore::find_column(drives, word).value_or(Column()).name; };

  EXPECT_EQ(name("temp"), "temperature");
  EXPECT_EQ(name("STATUS"), "status_desc");
  EXPECT_EQ(name("status"), "status");
  EXPECT_EQ(name("Status"), "status");
  EXPECT_EQ(name("Power_On_Hours"), "power_on_hours");
  EXPECT_EQ(name("health"), "health");
  EXPECT_EQ(name("device"), "device");
  EXPECT_EQ(name("tempo"), "");
  EXPECT_EQ(name(""), "");
}

TEST(Columns, OfAFieldHaveItsHeading) { EXPECT_EQ(find_column(kind_named("drives"), "temperature")->heading, "TEMP"); }

TEST(Columns, OfNumbersAreRightAligned) {
  const mcstore::Kind &drives = kind_named("drives");
  const auto is_right = [&](const char *word) { return is_right_aligned(drives, *find_column(drives, word)); };

  EXPECT_TRUE(is_right("raw_size"));
  EXPECT_TRUE(is_right("temperature"));
  EXPECT_FALSE(is_right("device_type"));
  EXPECT_FALSE(is_right("serial_num"));
  EXPECT_FALSE(is_right("device"));
}

TEST(Columns, ShowNothingOfAFieldThatTheVariantLacks) {
  const RecordOf battery("bbus");
  const auto shown = [&](const char *word) {
    return text_of(*find_column(battery.kind(), word), battery.device(), Health::kWarning);
  };

  EXPECT_EQ(shown("capacitance"), "");
  EXPECT_EQ(shown("full_capacity"), "0");
  EXPECT_EQ(shown("health"), "WARNING");
  EXPECT_EQ(shown("device"), "bbu c0");
}

// ------------------------------------------------------------------------------------------------------- colour

TEST(Colour, IsForTerminalsUnlessItIsAskedFor) {
  using mcstore::ColourChoice;
  using mcstore::wants_colour;
  setenv("TERM", "xterm", 1);
  unsetenv("NO_COLOR");

  EXPECT_TRUE(wants_colour(ColourChoice::kAuto, true));
  EXPECT_FALSE(wants_colour(ColourChoice::kAuto, false));
  EXPECT_TRUE(wants_colour(ColourChoice::kAlways, false));
  EXPECT_FALSE(wants_colour(ColourChoice::kNever, true));
  setenv("TERM", "dumb", 1);
  EXPECT_FALSE(wants_colour(ColourChoice::kAuto, true));
  EXPECT_TRUE(wants_colour(ColourChoice::kAlways, true));
  setenv("TERM", "xterm", 1);
  setenv("NO_COLOR", "1", 1);
  EXPECT_FALSE(wants_colour(ColourChoice::kAuto, true));
  unsetenv("NO_COLOR");
}

TEST(Colour, EndsBehindTheText) { EXPECT_EQ(mcstore::coloured("bad", Health::kCritical), "\033[1;31mbad\033[0m"); }

}  // namespace
}  // namespace tests
