// mcstore diff: what changed between two inventories.

#include <fmt/core.h>

#include <algorithm>
#include <memory>

#include "mcstore/commands/change_format.h"
#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/validators.h"

namespace mcstore {
namespace {

// As of other tools that compare.
constexpr int kSame = 0;
constexpr int kDifferent = 1;
constexpr int kTrouble = 2;

struct DiffOptions {
  SourceOptions source;
  std::string before;
  std::string after;
  ChangeFormat format = ChangeFormat::kText;
};

struct Side {
  std::vector<KindInventory> kinds = {};
  bool is_whole = true;
};

// In a life of the plug-in of its own, which remembers what it has read.
Side read_side(SourceOptions options, const std::string &directory) {
  options.from = directory;
  Source source(options);
  Side side;
  for (const Kind &kind : kinds()) {
    side.kinds.push_back(source.read(kind));
    const KindInventory &inventory = side.kinds.back();
    if (inventory.status != KindStatus::kUnreadable && inventory.status != KindStatus::kDamaged) continue;
    complain(fmt::format("{}: {}: {}", directory, kind.name, inventory.error), kTrouble);
    side.is_whole = false;
  }
  if (std::ranges::none_of(side.kinds, &KindInventory::has_data)) {
    complain(fmt::format("{}: there is no inventory in it", directory), kTrouble);
    side.is_whole = false;
  }
  return side;
}

int compare(const DiffOptions &options) {
  const Side before = read_side(options.source, options.before);
  const Side after = read_side(options.source, options.after);
  bool is_same = true;
  for (size_t i = 0; i < after.kinds.size(); ++i) {
    std::string text;
    const KindInventory &old_look = before.kinds[i];
    const KindInventory &new_look = after.kinds[i];
    for (const auto &changes : {status_changes(old_look, old_look, new_look), data_changes(old_look, new_look)})
      for (const Change &change : changes) text += shown_change(change, options.format);
    is_same = is_same && text.empty();
    if (!text.empty()) print(text);
  }
  if (!before.is_whole || !after.is_whole) return kTrouble;
  return is_same ? kSame : kDifferent;
}

int diff(const DiffOptions &options) {
  try {
    return compare(options);
  } catch (const std::exception &error) {
    return complain(reason(error), kTrouble);
  }
}

void add_side(CLI::App &command, const char *name, std::string &directory, const char *description) {
  command.add_option(name, directory, description)->required()->type_name("")->check(existing_directory());
}

}  // namespace

void add_diff(CLI::App &app, Action &action) {
  const auto options = std::make_shared<DiffOptions>();
  CLI::App &command = *app.add_subcommand("diff", "Tell which devices came, went or changed");
  add_side(command, "A", options->before, "A capture, a root, or a directory with store files; / is this machine");
  add_side(command, "B", options->after, "What it is compared with, likewise");
  add_change_format(command, options->format);
  add_reading_options(command, options->source);
  command.footer(
      "Exit codes: 0 nothing changed; 1 something did; 2 not everything could be compared.\n"
      "\n"
      "Examples:\n"
      "  mcstore diff A B\n"
      "  mcstore diff A B --format ndjson\n"
      "  mcstore diff A B >changes");
  command.callback([options, &action] { action = [options] { return diff(*options); }; });
}

}  // namespace mcstore
