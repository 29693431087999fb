#include <gtest/gtest.h>

#include "mcstore/json/store_content.h"

namespace tests {
namespace {

using mcstore::InventoryError;
using mcstore::parse_inventory;

std::string syntax_complaint(const std::string &json) {
  try {
    parse_inventory(json);
  } catch (const InventoryError &error) {
    return error.what();
  }
  return "(accepted)";
}

std::string repeated(const std::string &text, size_t times) {
  std::string all;
  for (size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(JsonInput, TellsWhereJsonIsBroken) {
  EXPECT_EQ(syntax_complaint("{\n  \"format\": nonsense\n}"), "line 2, column 14: this is not valid JSON");
  EXPECT_EQ(syntax_complaint("{\"format\": \"\xff\"}"), "line 1, column 13: this is not valid JSON");
  EXPECT_EQ(syntax_complaint("{\"format\": 2} more"), "line 1, column 15: this is not valid JSON");
  EXPECT_EQ(syntax_complaint("{\"format\": 1e999}"), "line 1, column 16: no field takes a number as large as this");
}

TEST(JsonInput, TellsWhereJsonEndsEarly) {
  EXPECT_EQ(syntax_complaint(""), "line 1, column 1: the text ends before its JSON does");
  EXPECT_EQ(syntax_complaint("{\n  \"format\": 2,\n"), "line 3, column 1: the text ends before its JSON does");
}

TEST(JsonInput, RefusesWhatIsNestedTooDeeply) {
  const std::string deep(1000000, '[');

  EXPECT_EQ(syntax_complaint(R"({"format": 2, "kinds": )" + deep),
            "kinds" + repeated("[0]", 31) + ": is nested deeper than 32 levels");
}

}  // namespace
}  // namespace tests
