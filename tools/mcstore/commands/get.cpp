// mcstore get: what the devices of a kind are.

#include <fmt/core.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/kinds/unit.h"
#include "mcstore/views/hex.h"
#include "mcstore/views/json.h"

namespace mcstore {
namespace {

constexpr char kJson[] = "json";
constexpr char kNdjson[] = "ndjson";
constexpr char kHex[] = "hex";

struct GetOptions {
  SourceOptions source;
  std::string kind;
  std::string format = kHex;
};

// Prints in large pieces what is appended to a string, so that an inventory of any size takes little memory.
class PiecewiseOutput {
 public:
  std::string text = {};

  void print_if_long() {
    constexpr size_t kLong = 65536;
    if (text.size() > kLong) print_all();
  }
  void print_all() {
    print(text);
    text.clear();
  }
};

DocumentHead document_head(const Source &source) {
  struct timespec now = {};
  now.tv_sec = time(nullptr);
  return {.version = MCSTORE_VERSION, .time = iso_time(now), .root = source.place().directory()};
}

// Tells what a line for each device cannot.
int complain_of(const KindInventory &inventory) {
  for (const std::string &note : inventory.notes) complain(fmt::format("{}: {}", inventory.kind->name, note), kSuccess);
  if (inventory.error.empty() || inventory.status == KindStatus::kAbsent) return kSuccess;
  return complain(fmt::format("{}: {}", inventory.kind->name, inventory.error), kFailure);
}

int get_json(const GetOptions &options) {
  Source source(options.source);
  const Judge judge(Standards{});
  PiecewiseOutput out;
  JsonDocument document(out.text, judge, document_head(source));
  for (const Kind *kind : chosen_kinds(options.kind)) document.add(source.read(*kind), [&] { out.print_if_long(); });
  document.end();
  out.print_all();
  return kSuccess;
}

int get_ndjson(const GetOptions &options) {
  Source source(options.source);
  const Judge judge(Standards{});
  PiecewiseOutput out;
  int exit_code = kSuccess;
  for (const Kind *kind : chosen_kinds(options.kind)) {
    const KindInventory inventory = source.read(*kind);
    append_ndjson(out.text, inventory, judge, [&] { out.print_if_long(); });
    exit_code = std::max(exit_code, complain_of(inventory));
  }
  out.print_all();
  return exit_code;
}

int get_hex(const GetOptions &options) {
  Source source(options.source);
  for (const Kind *kind : chosen_kinds(options.kind)) print(hex_dump(source.reply(*kind)));
  return kSuccess;
}

int get(const GetOptions &options) {
  if (options.format == kJson) return get_json(options);
  if (options.format == kNdjson) return get_ndjson(options);
  return get_hex(options);
}

}  // namespace

void add_get(CLI::App &app, Action &action) {
  const auto options = std::make_shared<GetOptions>();
  CLI::App &command = *app.add_subcommand("get", "Show the devices of a kind");
  add_kind(command, options->kind)->required();
  command.add_option("--format", options->format, "How to show them: json, ndjson or hex")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({kJson, kNdjson, kHex}))
      ->capture_default_str();
  add_source_options(command, options->source);
  command.callback([options, &action] { action = [options] { return get(*options); }; });
}

}  // namespace mcstore
