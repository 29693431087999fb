#include "mcstore/commands.h"

#include <fmt/core.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <system_error>
#include <thread>

#include "mcserver_storage.h"
#include "mcstore/collector.h"
#include "mcstore/decoding.h"
#include "mcstore/format.h"
#include "mcstore/inventory.h"
#include "mcstore/kind.h"
#include "mcstore/progress.h"
#include "mcstore/reply.h"
#include "mcstore/watch.h"

namespace mcstore {
namespace {

constexpr size_t kDefaultWidth = 120;

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

// ---------------------------------------------------------------------------------------------------------- get

// Bytes are shown as they came, and so is a reply that cannot be shown otherwise.
int get_one(Session &session, const Kind &kind, const std::string &format) {
  if (format == "xml" && kind.layout)
    return complain(fmt::format("--format: {} are not reported in XML", kind.name), kUsage);

  const std::string bytes = session.call(std::string(kind.full_entry_point));
  if (format == "xml" || format == "hex") {
    print(format == "xml" ? bytes + '\n' : format_hex(bytes));
    return kSuccess;
  }
  try {
    const ParsedReply reply = parse_reply(kind, bytes);
    print(format == "json" ? format_json(kind, reply) : format_table(kind, reply, terminal_width()));
    return kSuccess;
  } catch (const MalformedReply &error) {
    print(kind.layout ? format_hex(bytes) : bytes + '\n');
    return complain(error.what(), kFailure);
  }
}

// A kind without data is no failure here, since no server has all of them.
int get_all(Session &session, const std::string &format) {
  if (format == "xml") return complain("--format: not every kind is reported in XML", kUsage);

  int exit_code = kSuccess;
  std::vector<Answer> answers;
  for (const Kind &kind : kinds()) {
    try {
      const std::string bytes = session.call(std::string(kind.full_entry_point));
      if (format == "hex")
        print(fmt::format("{}:\n{}\n", kind.title, format_hex(bytes)));
      else if (format == "json")
        answers.push_back({&kind, parse_reply(kind, bytes)});
      else
        print(format_table(kind, parse_reply(kind, bytes), terminal_width()) + '\n');
    } catch (const PluginFailure &failure) {
      if (failure.status() != MC_STORE_NO_DATA)
        exit_code = complain(failure.what(), kFailure);
      else if (format == "json")
        answers.push_back({&kind, failure.status()});
      else
        print(fmt::format("{}: no data\n\n", kind.title));
    } catch (const MalformedReply &error) {
      exit_code = complain(fmt::format("{}: {}", kind.name, error.what()), kFailure);
    }
  }
  if (format == "json") print(format_json(answers));
  return exit_code;
}

// -------------------------------------------------------------------------------------------------------- watch

// Waits between two calls; false when there have been enough.
class Calls {
 public:
  explicit Calls(const WatchOptions &options) : options_(options) {}

  bool next() {
    if (options_.count != 0 && number_ == options_.count) return false;
    if (number_++ > 0) std::this_thread::sleep_for(std::chrono::duration<double>(options_.interval));
    return true;
  }
  uint64_t number() const { return number_; }

 private:
  const WatchOptions &options_;
  uint64_t number_ = 0;
};

ParsedReply changes(Session &session, const Kind &kind) {
  return parse_reply(kind, session.call(std::string(kind.delta_entry_point)));
}

// A failing call is told and counted, but does not end the watch: the collector may only be late.
int watch_one(Session &session, const Kind &kind, Calls calls) {
  Watcher watcher(kind);
  int exit_code = kSuccess;
  while (calls.next()) {
    try {
      print(fmt::format("call {}: {}", calls.number(), watcher.report(changes(session, kind))));
    } catch (const PluginFailure &failure) {
      exit_code = complain(fmt::format("call {}: {}", calls.number(), failure.what()), kFailure);
    } catch (const MalformedReply &error) {
      exit_code = complain(fmt::format("call {}: {}", calls.number(), error.what()), kFailure);
    }
  }
  return exit_code;
}

// The same for every kind, but a kind without data is no failure, and one without changes not worth a line.
int watch_all(Session &session, Calls calls) {
  std::list<Watcher> watchers(kinds().begin(), kinds().end());
  int exit_code = kSuccess;
  while (calls.next()) {
    std::string news;
    for (Watcher &watcher : watchers) {
      const Kind &kind = watcher.kind();
      try {
        const ParsedReply reply = changes(session, kind);
        if (!reply.devices.empty())
          news += fmt::format("call {}, {}: {}", calls.number(), kind.name, watcher.report(reply));
      } catch (const PluginFailure &failure) {
        if (failure.status() != MC_STORE_NO_DATA)
          exit_code = complain(fmt::format("call {}: {}", calls.number(), failure.what()), kFailure);
      } catch (const MalformedReply &error) {
        exit_code = complain(fmt::format("call {}, {}: {}", calls.number(), kind.name, error.what()), kFailure);
      }
    }
    print(news.empty() ? fmt::format("call {}: nothing changed\n", calls.number()) : news);
  }
  return exit_code;
}

}  // namespace

std::vector<std::string> kind_names() {
  std::vector<std::string> names;
  for (const Kind &kind : kinds()) names.emplace_back(kind.name);
  return names;
}

std::vector<std::string> decodable_kind_names() {
  std::vector<std::string> names;
  for (const Kind &kind : kinds())
    if (!kind.decoder.empty()) names.emplace_back(kind.name);
  return names;
}

int get(const SessionOptions &session_options, const GetOptions &options) {
  Session session(session_options);
  if (options.kind == kAllKinds) return get_all(session, options.format);
  return get_one(session, kind_named(options.kind), options.format);
}

int watch(const SessionOptions &session_options, const WatchOptions &options) {
  Session session(session_options);
  if (options.kind == kAllKinds) return watch_all(session, Calls(options));
  return watch_one(session, kind_named(options.kind), Calls(options));
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

int decode(const DecodeOptions &options) {
  std::vector<const Kind *> chosen;
  for (const Kind &kind : kinds())
    if (!kind.decoder.empty() && (options.kinds.empty() || std::ranges::count(options.kinds, kind.name) > 0))
      chosen.push_back(&kind);
  std::filesystem::create_directories(options.output_dir);

  uint64_t total = 0;
  for (const Kind *kind : chosen) total += input_size(options.input_dir, *kind);

  std::string report;
  int exit_code = kSuccess;
  {
    ProgressBar bar(total);
    uint64_t done = 0;
    Decoding decoding(options.plugin, options.input_dir, options.output_dir,
                      [&](uint64_t bytes) { bar.show(done + bytes); });
    for (const Kind *kind : chosen) {
      const Decoded decoded = decoding.decode(*kind);
      report += fmt::format("{}: {}\n", kind->name, decoded.text);
      if (decoded.failed) exit_code = kFailure;
      done += input_size(options.input_dir, *kind);
    }
  }
  print(report);
  return exit_code;
}

}  // namespace mcstore
