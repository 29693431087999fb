#include <fstream>

#include "host/plugin_test.h"

namespace tests {
namespace {

class Exports : public PluginTest {};

// That there are no others, script/check-object tells.
TEST_F(Exports, AreAllThatTheListNames) {
  std::ifstream list(EXPORTS_LIST);
  int number = 0;
  for (std::string name; std::getline(list, name); ++number) EXPECT_NE(variable<char>(name), nullptr) << name;

  EXPECT_GT(number, 0);
}

}  // namespace
}  // namespace tests
