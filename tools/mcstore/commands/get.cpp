// mcstore get: what the devices of a kind are.

#include <fmt/core.h>

#include <ctime>
#include <memory>
#include <optional>
#include <stdexcept>

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

// Reads kinds, and keeps in mind what the exit code is to be.
class Reader {
 public:
  explicit Reader(const SourceOptions &options) {
    try {
      source_.emplace(options);
    } catch (const std::runtime_error &failure) {
      failure_ = failure.what();
    }
  }

  // Without the plug-in, every kind is unreadable: a document says so of each, and stays whole.
  KindInventory read(const Kind &kind) {
    KindInventory inventory = source_ ? source_->read(kind) : unreadable(kind);
    has_data_ = has_data_ || inventory.has_data();
    is_whole_ = is_whole_ && inventory.status != KindStatus::kUnreadable && inventory.status != KindStatus::kDamaged;
    return inventory;
  }

  int exit_code() const { return !is_whole_ ? kFailure : has_data_ ? kSuccess : kNothingThere; }

 private:
  KindInventory unreadable(const Kind &kind) const {
    KindInventory inventory(kind);
    inventory.status = KindStatus::kUnreadable;
    inventory.error = failure_;
    return inventory;
  }

  std::optional<Source> source_;
  std::string failure_;
  bool has_data_ = false;
  bool is_whole_ = true;
};

DocumentHead document_head(const std::string &from) {
  struct timespec now = {};
  now.tv_sec = time(nullptr);
  return {.version = MCSTORE_VERSION, .time = iso_time(now), .root = from.empty() ? "/" : from};
}

int get_json(const GetOptions &options) {
  Reader reader(options.source);
  const Judge judge(Standards{});
  PiecewiseOutput out;
  JsonDocument document(out.text, judge, document_head(options.source.from));
  for (const Kind *kind : chosen_kinds(options.kind)) document.add(reader.read(*kind), [&] { out.print_if_long(); });
  document.end();
  out.print_all();
  return reader.exit_code();
}

int get_ndjson(const GetOptions &options) {
  Reader reader(options.source);
  const Judge judge(Standards{});
  PiecewiseOutput out;
  for (const Kind *kind : chosen_kinds(options.kind)) {
    const KindInventory inventory = reader.read(*kind);
    append_ndjson(out.text, inventory, judge, [&] { out.print_if_long(); });
    // A line for each device has no room for what is wrong with a kind.
    for (const std::string &note : inventory.notes) complain(fmt::format("{}: {}", kind->name, note), kSuccess);
    if (!inventory.error.empty() && inventory.status != KindStatus::kAbsent)
      complain(fmt::format("{}: {}", kind->name, inventory.error), kFailure);
  }
  out.print_all();
  return reader.exit_code();
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
