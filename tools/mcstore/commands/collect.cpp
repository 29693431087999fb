// mcstore collect: plays the collector.

#include <fstream>
#include <iterator>
#include <memory>

#include "mcstore/collect/collector.h"
#include "mcstore/collect/store_content.h"
#include "mcstore/commands/command.h"
#include "mcstore/commands/output.h"

namespace mcstore {
namespace {

struct CollectOptions {
  std::string inventory;
  std::string root;
  std::string at;  // as parse_time() takes it; empty for now
};

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

}  // namespace

void add_collect(CLI::App &app, Action &action) {
  const auto options = std::make_shared<CollectOptions>();
  CLI::App &command = *app.add_subcommand("collect", "Play the collector: write the store files");
  command.add_option("INVENTORY", options->inventory, "JSON file that describes the inventory")
      ->required()
      ->type_name("")
      ->check(CLI::ExistingFile);
  command.add_option("--root", options->root, "Write below this directory, which is made if needed")
      ->type_name("DIR")
      ->required();
  command.add_option("--at", options->at, "The files' modification time: epoch seconds or ISO 8601")->type_name("TIME");
  command.callback([options, &action] { action = [options] { return collect(*options); }; });
}

}  // namespace mcstore
