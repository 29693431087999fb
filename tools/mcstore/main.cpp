// mcstore: a host for the plug-in on the command line.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "mcstore/commands.h"
#include "mcstore/reply_memory.h"

namespace mcstore {
namespace {

void add_plugin_option(CLI::App &command, std::string &plugin) {
  command.add_option("--plugin", plugin, "The shared object to load instead of the one found beside mcstore")
      ->type_name("PATH")
      ->check(CLI::ExistingFile);
}

void add_session_options(CLI::App &command, SessionOptions &options) {
  command.add_option("--root", options.root, "Take the plug-in's files (/var/...) from below this directory")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_option("--trace", options.trace_level, "The plug-in's trace level; above 2 it traces to standard error")
      ->type_name("LEVEL");
  add_plugin_option(command, options.plugin);
  command.add_option("--buffer-size", options.buffer_size, "The reply buffer's size before the plug-in asks for more")
      ->type_name("N")
      ->check(CLI::Range(1u, ReplyMemory::kLargest))
      ->capture_default_str();
}

CLI::Option *add_kind(CLI::App &command, std::string &kind) {
  std::vector<std::string> names = kind_names();
  names.insert(names.begin(), kAllKinds);
  return command.add_option("KIND", kind, "What to show")->type_name("")->check(CLI::IsMember(names));
}

void add_decodable_kinds(CLI::App &command, std::vector<std::string> &chosen) {
  command.add_option("KIND", chosen, "What to decode; everything if there is none")
      ->type_name("")
      ->check(CLI::IsMember(decodable_kind_names()));
}

int run(int argc, char **argv) {
  CLI::App app("Shows the storage inventory of a server, as the plug-in libmcserver_storage.so reports it.", "mcstore");
  app.require_subcommand(1);
  app.set_version_flag("--version", "mcstore " MCSTORE_VERSION);
  app.footer(
      "Exit codes: 0 success; 1 the plug-in reported a failure, or a file could not be written or decoded; 2 usage.");

  SessionOptions session;
  GetOptions get_options;
  CLI::App &get_command = *app.add_subcommand("get", "Show the full inventory of a kind");
  add_kind(get_command, get_options.kind)->required();
  get_command
      .add_option("--format", get_options.format,
                  "How to show it: table, json, hex (the reply's bytes) or xml (NVMe's own)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"table", "json", "xml", "hex"}))
      ->capture_default_str();
  add_session_options(get_command, session);

  WatchOptions watch_options;
  CLI::App &watch_command = *app.add_subcommand("watch", "Keep asking what changed: new, modified and gone devices");
  add_kind(watch_command, watch_options.kind)->capture_default_str();
  watch_command.add_option("--interval", watch_options.interval, "Seconds between two calls")
      ->type_name("S")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  watch_command.add_option("--count", watch_options.count, "End after so many calls; 0 never ends")
      ->type_name("CALLS")
      ->capture_default_str();
  add_session_options(watch_command, session);

  CollectOptions collect_options;
  CLI::App &collect_command = *app.add_subcommand("collect", "Play the collector: write the store files");
  collect_command.add_option("INVENTORY", collect_options.inventory, "JSON file that describes the inventory")
      ->required()
      ->type_name("")
      ->check(CLI::ExistingFile);
  collect_command.add_option("--root", collect_options.root, "Write below this directory, which is made if needed")
      ->type_name("DIR")
      ->required();
  collect_command.add_option("--at", collect_options.at, "The files' modification time: epoch seconds or ISO 8601")
      ->type_name("TIME");

  DecodeOptions decode_options;
  CLI::App &decode_command = *app.add_subcommand("decode", "Turn copies of store files into text files");
  decode_command.add_option("INPUT_DIR", decode_options.input_dir, "Where the copies are, under the files' own names")
      ->required()
      ->type_name("")
      ->check(CLI::ExistingDirectory);
  decode_command.add_option("OUTPUT_DIR", decode_options.output_dir, "Where the text goes; made if needed")
      ->required()
      ->type_name("");
  add_decodable_kinds(decode_command, decode_options.kinds);
  add_plugin_option(decode_command, decode_options.plugin);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? kSuccess : kUsage;
  }

  if (get_command.parsed()) return get(session, get_options);
  if (watch_command.parsed()) return watch(session, watch_options);
  if (collect_command.parsed()) return collect(collect_options);
  return decode(decode_options);
}

}  // namespace
}  // namespace mcstore

int main(int argc, char **argv) {
  try {
    return mcstore::run(argc, argv);
  } catch (const std::exception &error) {
    fprintf(stderr, "mcstore: %s\n", error.what());
    return mcstore::kFailure;
  }
}
