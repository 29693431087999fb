#include "mcstore/commands/options.h"

#include <fmt/core.h>

#include <map>
#include <utility>

#include "mcstore/commands/validators.h"

namespace mcstore {

void add_plugin_option(CLI::App &command, std::string &plugin) {
  command.add_option("--plugin", plugin, "The shared object to load instead of the one found beside mcstore")
      ->type_name("PATH")
      ->check(existing_file());
}

void add_colour_option(CLI::App &command, ColourChoice &choice) {
  static const std::map<std::string, ColourChoice> choices = {
      {"auto", ColourChoice::kAuto}, {"always", ColourChoice::kAlways}, {"never", ColourChoice::kNever}};
  command
      .add_option_function<std::string>(
          "--color", [&choice](const std::string &word) { choice = choices.at(word); },
          "When to colour: auto does on terminals, unless NO_COLOR is set")
      ->type_name("WHEN")
      ->check(one_of({"auto", "always", "never"}));
}

void add_from_option(CLI::App &command, std::string &from) {
  command
      .add_option("--from,--root", from,
                  "Read there instead of on this machine: a capture, a root, or a directory with store files")
      ->type_name("DIR")
      ->check(existing_directory());
}

void add_timeout_option(CLI::App &command, Patience &patience) {
  command.add_option("--timeout", patience.seconds, "Seconds to wait for the collector's lock, at most")
      ->type_name("S")
      ->check(number_between(0, 86400));
}

void add_reading_options(CLI::App &command, SourceOptions &options) {
  add_timeout_option(command, options.patience);
  command.add_option("--trace", options.session.trace_level, "The plug-in's trace level; above 2 it traces to stderr")
      ->type_name("LEVEL")
      ->check(whole_number_between(0, 9));
  add_plugin_option(command, options.session.plugin);
  command
      .add_option("--buffer-size", options.session.buffer_size,
                  "The reply buffer's size before the plug-in asks for more")
      ->type_name("N")
      ->check(whole_number_between(1, ReplyMemory::kLargest))
      ->capture_default_str();
}

void add_source_options(CLI::App &command, SourceOptions &options) {
  add_from_option(command, options.from);
  add_reading_options(command, options);
}

std::vector<std::string> kind_names() {
  std::vector<std::string> names;
  for (const Kind &kind : kinds()) names.emplace_back(kind.name);
  return names;
}

CLI::Option *add_kind(CLI::App &command, std::string &kind) {
  std::vector<std::string> names = kind_names();
  names.insert(names.begin(), kAllKinds);
  return command.add_option("KIND", kind, "What to show")->type_name("")->check(one_of(std::move(names)));
}

std::string nothing_there(const SourceOptions &options, const std::string &why) {
  return fmt::format("no data in {}: {}; --from DIR reads a capture, another root, or a directory with store files",
                     options.from.empty() ? "/" : options.from, why);
}

std::vector<const Kind *> chosen_kinds(const std::string &name) {
  std::vector<const Kind *> chosen;
  for (const Kind &kind : kinds())
    if (name == kAllKinds || name == kind.name) chosen.push_back(&kind);
  return chosen;
}

}  // namespace mcstore
