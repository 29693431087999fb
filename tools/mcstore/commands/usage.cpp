#include "mcstore/commands/usage.h"

#include <fmt/core.h>

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

std::string unexpected_word(const CLI::App &app) {
  const CLI::App &command = chosen(app);
  const std::vector<std::string> words = command.remaining(true);
  const std::string word = words.empty() ? "" : words.front();
  if (!word.starts_with('-')) return fmt::format("'{}' is one argument too many; see '{}'", word, help_of(command));
  const std::string name = word.substr(0, word.find('='));
  const std::string meant = suggestion(name, options_of(command));
  return fmt::format("there is no option '{}'{}", name,
                     meant.empty() ? fmt::format("; see '{}'", help_of(command)) : meant);
}

}  // namespace

std::string usage_problem(const CLI::App &app, const CLI::ParseError &error) {
  const CLI::App &command = chosen(app);
  if (dynamic_cast<const CLI::ValidationError *>(&error)) return error.what();  // by our own validators
  if (dynamic_cast<const CLI::ExtrasError *>(&error)) return unexpected_word(app);
  if (dynamic_cast<const CLI::ArgumentMismatch *>(&error))
    return fmt::format("{}: its value is missing; see '{}'", option_in(error, ":"), help_of(command));
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
  for (const std::string &name : names)
    if (name == argv[1]) return "";
  const std::string meant = suggestion(argv[1], names);
  return fmt::format("there is no command '{}'{}", argv[1], meant.empty() ? "; see 'mcstore --help'" : meant);
}

}  // namespace mcstore
