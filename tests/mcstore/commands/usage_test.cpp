#include <gmock/gmock.h>

#include "mcstore/command_line.h"

namespace tests {
namespace {

void expect_usage(const std::string &arguments, const std::string &message) {
  const Outcome outcome = mcstore(arguments);
  EXPECT_EQ(outcome.exit_code, 2) << arguments;
  EXPECT_EQ(outcome.out, "") << arguments;
  EXPECT_EQ(outcome.err, "mcstore: " + message + '\n') << arguments;
}

TEST(Usage, NamesTheNearestCommand) {
  expect_usage("gett drives", "there is no command 'gett'; did you mean 'get'?");
  expect_usage("coll x", "there is no command 'coll'; did you mean 'collect'?");
  expect_usage("zzzzzz", "there is no command 'zzzzzz'; see 'mcstore --help'");
}

TEST(Usage, AsksForACommand) {
  expect_usage("", "which command? see 'mcstore --help'");
  expect_usage("--verson", "there is no option '--verson'; did you mean '--version'?");
}

TEST(Usage, NamesTheNearestOption) {
  expect_usage("get drives --trase 3", "there is no option '--trase'; did you mean '--trace'?");
  expect_usage("get drives --zzzzzzzz", "there is no option '--zzzzzzzz'; see 'mcstore get --help'");
}

TEST(Usage, NamesTheNearestKind) {
  expect_usage("get drivs",
               "KIND: 'drivs' is none of all, controllers, drives, virtual-drives, bbus, expanders, nvme-controllers, "
               "nvme-drives; did you mean 'drives'?");
}

TEST(Usage, TellsWhatIsMissing) {
  expect_usage("get", "KIND is missing; see 'mcstore get --help'");
  expect_usage("get drives --from", "--from: its value is missing; see 'mcstore get --help'");
  expect_usage("collect /dev/null", "--root is missing; see 'mcstore collect --help'");
}

TEST(Usage, TellsWhichValueIsWrong) {
  expect_usage("get drives --from /nowhere", "--from: /nowhere: No such file or directory");
  expect_usage("get drives --buffer-size 0", "--buffer-size: '0' is not a number from 1 to " +
                                                 std::string(sizeof(void *) == 8 ? "1073741824" : "268435456"));
  expect_usage("get drives --timeout never", "--timeout: 'never' is not a number from 0 to 86400");
}

TEST(Usage, LetsNoWordDisturbTheTerminal) {
  expect_usage("\"$(printf 'x\\033[1m')\"", "there is no command 'x\\x1b[1m'; see 'mcstore --help'");
}

TEST(Usage, TellsTheVersion) {
  const Outcome outcome = mcstore("--version");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, testing::MatchesRegex("mcstore [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
}  // namespace tests
