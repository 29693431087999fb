// mcstore collect: plays the collector.

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "mcstore/collect/collector.h"
#include "mcstore/commands/command.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/validators.h"
#include "mcstore/json/store_content.h"

namespace mcstore {
namespace {

constexpr char kStandardInput[] = "-";

// Of the files' modification time: not every file system stores another one.
constexpr time_t kEarliest = 0;
constexpr time_t kLatest = 4294967295;

using File = std::unique_ptr<FILE, int (*)(FILE *)>;

// Nothing if it cannot be read; errno says why.
std::optional<std::string> read_all(FILE *file) {
  std::string text;
  char piece[65536];
  while (const size_t count = fread(piece, 1, sizeof piece, file)) text.append(piece, count);
  if (ferror(file)) return {};
  return text;
}

struct CollectOptions {
  std::string inventory;
  std::string root;
  std::string at;  // as parse_time() takes it; empty for now
};

int write_inventory(const StoredInventory &inventory, const std::string &root, std::optional<time_t> modified) {
  if (inventory.stores.empty() && inventory.omissions.empty())
    return complain("the inventory has no kinds that are there: nothing to write", kNothingThere);
  write_stores(inventory.stores, root, modified);
  for (const std::string &line : inventory.omissions) complain(line, kFailure);
  return inventory.omissions.empty() ? kSuccess : kFailure;
}

int collect(const CollectOptions &options) {
  std::optional<time_t> modified;
  if (!options.at.empty()) {
    modified = parse_time(options.at);
    if (!modified)
      return complain("--at: '" + options.at + "' is neither seconds since 1970 nor an ISO 8601 time", kUsage);
    if (*modified < kEarliest || *modified > kLatest)
      return complain(fmt::format("--at: '{}' is not a time of files: these are from {} to {} seconds since 1970",
                                  options.at, kEarliest, kLatest),
                      kUsage);
  }
  const bool is_standard_input = options.inventory == kStandardInput;
  const std::string name = is_standard_input ? "standard input" : options.inventory;
  const File file(is_standard_input ? fdopen(dup(STDIN_FILENO), "rb") : fopen(options.inventory.c_str(), "rb"), fclose);
  const std::optional<std::string> text = file ? read_all(file.get()) : std::nullopt;
  if (!text) return complain(fmt::format("cannot read {}: {}", name, strerror(errno)), kUsage);

  try {
    return write_inventory(parse_inventory(*text), options.root, modified);
  } catch (const InventoryError &error) {
    return complain(name + ": " + error.what(), kUsage);
  }
}

}  // namespace

void add_collect(CLI::App &app, Action &action) {
  const auto options = std::make_shared<CollectOptions>();
  CLI::App &command = *app.add_subcommand("collect", "Play the collector: write the store files");
  command.add_option("INVENTORY", options->inventory, "JSON file that describes the inventory; - for standard input")
      ->required()
      ->type_name("");
  command.add_option("--root", options->root, "Write below this directory, which is made if needed")
      ->type_name("DIR")
      ->required();
  command.add_option("--at", options->at, "The files' modification time: epoch seconds or ISO 8601")->type_name("TIME");
  command.footer(
      "Examples:\n"
      "  mcstore collect inventory.json --root DIR\n"
      "  mcstore collect inventory.json --root DIR --at 2026-03-02T10:00:00Z\n"
      "  mcstore get all --from DIR --format json | mcstore collect - --root copy");
  command.callback([options, &action] { action = [options] { return collect(*options); }; });
}

}  // namespace mcstore
