// mcstore: a host for the plug-in on the command line.

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>

#include "mcstore/collector.h"
#include "mcstore/format.h"
#include "mcstore/inventory.h"
#include "mcstore/kind.h"
#include "mcstore/reply.h"
#include "mcstore/session.h"
#include "mcstore/watch.h"

namespace mcstore {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;
constexpr int kUsage = 2;
constexpr size_t kDefaultWidth = 120;

struct GetOptions {
  std::string kind;
  std::string format = "table";
};

struct WatchOptions {
  std::string kind;
  double interval = 5;
  uint64_t count = 0;
};

struct CollectOptions {
  std::string inventory;
  std::string root;
  std::string at;
};

void print(const std::string &text) {
  const bool written = fwrite(text.data(), 1, text.size(), stdout) == text.size() && fflush(stdout) == 0;
  if (!written) throw std::system_error(errno, std::generic_category(), "cannot write to standard output");
}

int complain(const std::string &message, int exit_code) {
  fprintf(stderr, "mcstore: %s\n", message.c_str());
  return exit_code;
}

size_t terminal_width() {
  struct winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kDefaultWidth;
}

// Bytes are shown as they came, and so is a reply that cannot be shown otherwise.
int get(const SessionOptions &session_options, const GetOptions &options) {
  const Kind &kind = kind_named(options.kind);
  if (options.format == "xml" && kind.layout)
    return complain(fmt::format("--format: {} are not reported in XML", options.kind), kUsage);

  Session session(session_options);
  const std::string bytes = session.call(std::string(kind.full_entry_point));
  if (options.format == "xml" || options.format == "hex") {
    print(options.format == "xml" ? bytes + '\n' : format_hex(bytes));
    return kSuccess;
  }
  try {
    const Reply reply = parse_reply(kind, bytes);
    print(options.format == "json" ? format_json(kind, reply) : format_table(kind, reply, terminal_width()));
    return kSuccess;
  } catch (const MalformedReply &error) {
    print(kind.layout ? format_hex(bytes) : bytes + '\n');
    return complain(error.what(), kFailure);
  }
}

// A failing call is told and counted, but does not end the watch: the collector may only be late.
int watch(const SessionOptions &session_options, const WatchOptions &options) {
  const Kind &kind = kind_named(options.kind);
  Session session(session_options);
  Watcher watcher(kind);
  int exit_code = kSuccess;
  for (uint64_t call = 1; options.count == 0 || call <= options.count; ++call) {
    if (call > 1) std::this_thread::sleep_for(std::chrono::duration<double>(options.interval));
    try {
      const Reply reply = parse_reply(kind, session.call(std::string(kind.delta_entry_point)));
      print(fmt::format("call {}: {}", call, watcher.report(reply)));
    } catch (const std::runtime_error &failure) {
      exit_code = complain(fmt::format("call {}: {}", call, failure.what()), kFailure);
    }
  }
  return exit_code;
}

int collect(const CollectOptions &options) {
  std::optional<time_t> modified;
  if (!options.at.empty()) {
    modified = parse_time(options.at);
    if (!modified)
      return complain("--at: '" + options.at + "' is neither seconds since 1970 nor an ISO 8601 time", kUsage);
  }
  std::ifstream file(options.inventory, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file) return complain("cannot read " + options.inventory, kUsage);

  try {
    write_stores(parse_inventory(text), options.root, modified);
  } catch (const InventoryError &error) {
    return complain(options.inventory + ": " + error.what(), kUsage);
  }
  return kSuccess;
}

void add_session_options(CLI::App &command, SessionOptions &options) {
  command.add_option("--root", options.root, "Take the plug-in's files (/var/...) from below this directory")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_option("--trace", options.trace_level, "The plug-in's trace level; above 2 it traces to standard error")
      ->type_name("LEVEL");
  command.add_option("--plugin", options.plugin, "The shared object to load instead of the one found beside mcstore")
      ->type_name("PATH")
      ->check(CLI::ExistingFile);
  command.add_option("--buffer-size", options.buffer_size, "The reply buffer's size before the plug-in asks for more")
      ->type_name("N")
      ->check(CLI::Range(1u, ReplyMemory::kLargest))
      ->capture_default_str();
}

void add_kind(CLI::App &command, std::string &kind) {
  std::vector<std::string> names;
  for (const Kind &one : kinds()) names.emplace_back(one.name);
  command.add_option("KIND", kind, "The kind of device: " + fmt::format("{}", fmt::join(names, ", ")))
      ->required()
      ->type_name("")
      ->check(CLI::IsMember(names));
}

int run(int argc, char **argv) {
  CLI::App app("Shows the storage inventory of a server, as the plug-in libmcserver_storage.so reports it.", "mcstore");
  app.require_subcommand(1);
  app.set_version_flag("--version", "mcstore " MCSTORE_VERSION);
  app.footer("Exit codes: 0 success; 1 the plug-in reported a failure, or a file could not be written; 2 usage.");

  SessionOptions session;
  GetOptions get_options;
  CLI::App &get_command = *app.add_subcommand("get", "Show the full inventory of a kind");
  add_kind(get_command, get_options.kind);
  get_command
      .add_option("--format", get_options.format,
                  "How to show it: table, json, hex (the reply's bytes) or xml (NVMe's own)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"table", "json", "xml", "hex"}))
      ->capture_default_str();
  add_session_options(get_command, session);

  WatchOptions watch_options;
  CLI::App &watch_command = *app.add_subcommand("watch", "Keep asking what changed: new, modified and gone devices");
  add_kind(watch_command, watch_options.kind);
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

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? kSuccess : kUsage;
  }

  if (get_command.parsed()) return get(session, get_options);
  if (watch_command.parsed()) return watch(session, watch_options);
  return collect(collect_options);
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
