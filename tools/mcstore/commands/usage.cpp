#include "mcstore/commands/usage.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/kinds/nearest.h"

namespace mcstore {
namespace {

const CLI::App &chosen(const CLI::App &app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app : *commands.front();
}

std::string help_of(const CLI::App &command) {
  return command.get_parent() ? fmt::format("mcstore {} --help", command.get_name()) : "mcstore --help";
}

std::vector<std::string> commands_of(const CLI::App &app) {
  std::vector<std::string> names;
  for (const CLI::App *command : app.get_subcommands(nullptr)) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> options_of(const CLI::App &command) {
  std::vector<std::string> names;
  for (const CLI::Option *option : command.get_options())
    for (const std::string &name : option->get_lnames()) names.push_back("--" + name);
  return names;
}

// The library's messages begin with the name of the option that they are about.
std::string option_in(const CLI::ParseError &error, std::string_view end) {
  const std::string message = error.what();
  return message.substr(0, message.find(end));
}

// The option that is given as "--name=value".
std::string name_in(const std::string &word) { return word.substr(0, word.find('=')); }

// The library counts, and the number of values that were given tells more than its message.
std::string wrong_number_of_values(const CLI::App &command, const CLI::ParseError &error) {
  const std::string name = option_in(error, ":");
  const CLI::Option *option = command.get_option_no_throw(name);
  const bool is_repeated = option && option->count() > 1;
  const char *what = is_repeated ? " is given twice" : ": its value is missing";
  return fmt::format("{}{}; see '{}'", name, what, help_of(command));
}

std::string unexpected_word(const CLI::App &app) {
  const CLI::App &command = chosen(app);
  const std::vector<std::string> early_words = app.remaining();
  if (&command != &app && !early_words.empty())
    return fmt::format("there is no option '{}' before the command; see '{}'", name_in(early_words.front()),
                       help_of(app));
  const std::vector<std::string> words = command.remaining(true);
  const std::string word = words.empty() ? "" : words.front();
  if (!word.starts_with('-')) return fmt::format("'{}' is one argument too many; see '{}'", word, help_of(command));
  const std::string name = name_in(word);
  const std::string meant = suggestion(name, options_of(command));
  return fmt::format("there is no option '{}'{}", name,
                     meant.empty() ? fmt::format("; see '{}'", help_of(command)) : meant);
}

}  // namespace

std::string usage_problem(const CLI::App &app, const CLI::ParseError &error) {
  const CLI::App &command = chosen(app);
  if (dynamic_cast<const CLI::ValidationError *>(&error)) return error.what();  // by our own validators
  if (dynamic_cast<const CLI::ExtrasError *>(&error)) return unexpected_word(app);
  if (dynamic_cast<const CLI::ArgumentMismatch *>(&error)) return wrong_number_of_values(command, error);
  if (dynamic_cast<const CLI::ConversionError *>(&error))  // of flags alone: validators look at everything else
    return fmt::format("an option that takes no value is given one; see '{}'", help_of(command));
  if (dynamic_cast<const CLI::RequiredError *>(&error)) {
    if (!app.get_subcommands().empty())
      return fmt::format("{} is missing; see '{}'", option_in(error, " "), help_of(command));
    return app.remaining(true).empty() ? fmt::format("which command? see '{}'", help_of(app)) : unexpected_word(app);
  }
  if (dynamic_cast<const CLI::ExcludesError *>(&error))
    return fmt::format("{} excludes another option that is given; see '{}'", option_in(error, " "), help_of(command));
  return fmt::format("the command line cannot be understood; see '{}'", help_of(command));
}

std::string unknown_command(const CLI::App &app, int argc, char **argv) {
  if (argc < 2 || argv[1][0] == '-') return "";
  const std::vector<std::string> names = commands_of(app);
  if (std::ranges::count(names, argv[1]) > 0) return "";
  const std::string meant = suggestion(argv[1], names);
  return fmt::format("there is no command '{}'{}", argv[1], meant.empty() ? "; see 'mcstore --help'" : meant);
}

std::string command_in(const CLI::App &app, int argc, char **argv) {
  const std::vector<std::string> names = commands_of(app);
  char **const end = argv + argc;
  char **const command = std::find_if(argv + 1, end, [&](const char *word) { return std::ranges::count(names, word); });
  return command == end ? "" : *command;
}

}  // namespace mcstore
