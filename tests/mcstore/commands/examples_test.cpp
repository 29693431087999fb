#include <algorithm>
#include <sstream>
#include <vector>

#include "mcstore/command_line.h"

namespace tests {
namespace {

// The lines of the text behind that heading, up to an empty one, without what indents them.
std::vector<std::string> lines_below(const std::string &heading, const std::string &text) {
  std::vector<std::string> lines;
  const size_t begin = text.find(heading + '\n');
  if (begin == std::string::npos) return lines;

  std::istringstream stream(text.substr(begin + heading.size() + 1));
  for (std::string line; std::getline(stream, line) && !line.empty();)
    lines.push_back(line.substr(line.find_first_not_of(' ')));
  return lines;
}

std::vector<std::string> commands() {
  std::vector<std::string> names;
  for (const std::string &line : lines_below("Subcommands:", mcstore("--help").out))
    names.push_back(line.substr(0, line.find(' ')));
  return names;
}

// Adds an option that the command has, unless the example gives it.
void add_missing(std::string &example, const std::string &help, const std::string &option, const std::string &value) {
  const bool is_known = help.find("  " + option + ' ') != std::string::npos ||
                        help.find("  " + option + ',') != std::string::npos;  // with another name
  if (!is_known || example.find(option + ' ') != std::string::npos) return;
  const size_t end_of_command = example.find(' ', std::string("mcstore ").size());
  example.insert(std::min(end_of_command, example.size()), ' ' + option + ' ' + value);
}

class Examples : public testing::Test {
 protected:
  // In a new directory, where everything is that the examples name.
  static Outcome run_among_inventories(const std::string &example) {
    const StoreDirectory scratch;
    const std::string inventories = PROJECT_DIRECTORY "/docs/examples/";
    return run("mcstore() { " + mcstore_command() + " \"$@\"; }; cd " + scratch.real("") + " && cp " + inventories +
               "inventory.json ."
               " && mcstore collect inventory.json --root DIR && mcstore collect inventory.json --root A"
               " && mcstore collect " +
               inventories + "inventory-later.json --root B && " + example);
  }

  static bool is_success(const std::string &command, int exit_code) {
    if (command == "check") return exit_code >= 0 && exit_code <= 2;  // not UNKNOWN
    if (command == "diff") return exit_code == 1;                     // A and B differ
    return exit_code == 0;
  }
};

TEST_F(Examples, OfEachCommandsHelpAreThreeAndWork) {
  ASSERT_FALSE(commands().empty());

  for (const std::string &command : commands()) {
    const std::string help = mcstore(command + " --help").out;
    const std::vector<std::string> examples = lines_below("Examples:", help);

    EXPECT_EQ(examples.size(), 3) << command;
    for (std::string example : examples) {
      add_missing(example, help, "--from", "DIR");  // instead of this machine
      add_missing(example, help, "--for", "0.2");   // instead of for ever

      const Outcome outcome = run_among_inventories(example);

      EXPECT_TRUE(is_success(command, outcome.exit_code)) << example << " ends with " << outcome.exit_code;
      EXPECT_EQ(outcome.err, "") << example;
    }
  }
}

}  // namespace
}  // namespace tests
