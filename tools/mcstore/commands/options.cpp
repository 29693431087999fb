#include "mcstore/commands/options.h"

namespace mcstore {

void add_plugin_option(CLI::App &command, std::string &plugin) {
  command.add_option("--plugin", plugin, "The shared object to load instead of the one found beside mcstore")
      ->type_name("PATH")
      ->check(CLI::ExistingFile);
}

void add_source_options(CLI::App &command, SourceOptions &options) {
  command
      .add_option("--from,--root", options.from,
                  "Read there instead of on this machine: a capture, a root, or a directory with store files")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_option("--timeout", options.patience.seconds, "Seconds to wait for the collector's lock, at most")
      ->type_name("S")
      ->check(CLI::NonNegativeNumber);
  command.add_option("--trace", options.session.trace_level, "The plug-in's trace level; above 2 it traces to stderr")
      ->type_name("LEVEL");
  add_plugin_option(command, options.session.plugin);
  command
      .add_option("--buffer-size", options.session.buffer_size,
                  "The reply buffer's size before the plug-in asks for more")
      ->type_name("N")
      ->check(CLI::Range(1u, ReplyMemory::kLargest))
      ->capture_default_str();
}

CLI::Option *add_kind(CLI::App &command, std::string &kind) {
  std::vector<std::string> names = {kAllKinds};
  for (const Kind &one : kinds()) names.emplace_back(one.name);
  return command.add_option("KIND", kind, "What to show")->type_name("")->check(CLI::IsMember(names));
}

std::vector<const Kind *> chosen_kinds(const std::string &name) {
  std::vector<const Kind *> chosen;
  for (const Kind &kind : kinds())
    if (name == kAllKinds || name == kind.name) chosen.push_back(&kind);
  return chosen;
}

}  // namespace mcstore
