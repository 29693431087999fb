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
  expect_usage("get drives --from ''", "--from: '' is not a directory");
  expect_usage("get drives --buffer-size 0", "--buffer-size: '0' is not a number from 1 to " +
                                                 std::string(sizeof(void *) == 8 ? "1073741824" : "268435456"));
  expect_usage("get drives --timeout never", "--timeout: 'never' is not a number from 0 to 86400");
}

TEST(Usage, TellsWhichOptionIsGivenTwice) {
  expect_usage("get drives --timeout 1 --timeout 2", "--timeout is given twice; see 'mcstore get --help'");
  expect_usage("get drives --no-header=x", "an option that takes no value is given one; see 'mcstore get --help'");
}

TEST(Usage, TellsWhichOptionStandsBeforeTheCommand) {
  const std::string advice = "' before the command; see 'mcstore --help'";
  expect_usage("--bogus get drives", "there is no option '--bogus" + advice);
  expect_usage("--color=never get drives", "there is no option '--color" + advice);
  expect_usage("--color never get drives", "there is no option '--color" + advice);
}

TEST(Usage, IsUnknownToAMonitoringSystemWhereverCheckStands) {
  for (const char *arguments : {"--bogus check", "--color never check", "check get"}) {
    const Outcome outcome = mcstore(arguments);

    EXPECT_EQ(outcome.exit_code, 3) << arguments;
    EXPECT_THAT(outcome.out, testing::StartsWith("STORAGE UNKNOWN - ")) << arguments;
    EXPECT_EQ(outcome.err, "") << arguments;
  }
  EXPECT_EQ(mcstore("get check").exit_code, 2);
}

TEST(Usage, ReadsNumbersAsTheyLook) {
  expect_usage("watch --for 0.05 --count 010", "--count: '010' begins with a needless 0");
  expect_usage("get drives --trace 09", "--trace: '09' begins with a needless 0");
}

TEST(Usage, LetsNoWordDisturbTheTerminal) {
  expect_usage("\"$(printf 'x\\033[1m')\"", "there is no command 'x\\x1b[1m'; see 'mcstore --help'");
}

TEST(Usage, TellsTheVersion) {
  const Outcome outcome = mcstore("--version");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, testing::MatchesRegex("mcstore [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Usage, FailsWhenItCannotBeWritten) {
  for (const char *arguments : {"--help", "--version", "get --help"}) {
    const Outcome outcome = mcstore(std::string(arguments) + " >/dev/full");

    EXPECT_EQ(outcome.exit_code, 1) << arguments;
    EXPECT_EQ(outcome.err, "mcstore: cannot write to standard output: No space left on device\n") << arguments;
  }
}

}  // namespace
}  // namespace tests
