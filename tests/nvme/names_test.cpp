#include "host/plugin_test.h"

namespace tests {
namespace {

class NvmeNames : public PluginTest {
 protected:
  using Table = const char *const;
  const char *name(int value, Table *table) { return PLUGIN(enum_name)(value, table); }
  Table *states() { return variable<Table>("nvme_state_names"); }
  Table *statuses() { return variable<Table>("nvme_status_names"); }
};

TEST_F(NvmeNames, NameEveryState) {
  const char *const expected[] = {"Unknown", "Uninitialized", "Initializing", "Aux_Power", "Main_Power"};

  for (int state = 0; state < 5; ++state) EXPECT_STREQ(name(state, states()), expected[state]);
  EXPECT_EQ(states()[5], nullptr);
}

TEST_F(NvmeNames, NameEveryStatus) {
  const char *const expected[] = {"Unknown",      "Optimal", "Unresponsive", "Moderate_Fault",
                                  "Severe_Fault", "Deleted", "Degraded"};

  for (int status = 0; status < 7; ++status) EXPECT_STREQ(name(status, statuses()), expected[status]);
  EXPECT_EQ(statuses()[7], nullptr);
}

TEST_F(NvmeNames, AValueBeyondTheTableHasAnEmptyName) {
  for (const int value : {6, 9, 255}) EXPECT_STREQ(name(value, states()), "");
  for (const int value : {8, 255}) EXPECT_STREQ(name(value, statuses()), "");
}

TEST_F(NvmeNames, TheValueAtTheEndOfTheTableHasNone) {
  EXPECT_EQ(name(5, states()), nullptr);
  EXPECT_EQ(name(7, statuses()), nullptr);
}

TEST_F(NvmeNames, AWrongCallHasAnEmptyName) {
  EXPECT_STREQ(name(-1, states()), "");
  EXPECT_STREQ(name(0, nullptr), "");
}

}  // namespace
}  // namespace tests
