// mcstore get: what the devices of a kind are.

#include <memory>

#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/views/hex.h"

namespace mcstore {
namespace {

struct GetOptions {
  SourceOptions source;
  std::string kind;
};

int get(const GetOptions &options) {
  Source source(options.source);
  for (const Kind *kind : chosen_kinds(options.kind)) print(hex_dump(source.reply(*kind)));
  return kSuccess;
}

}  // namespace

void add_get(CLI::App &app, Action &action) {
  const auto options = std::make_shared<GetOptions>();
  CLI::App &command = *app.add_subcommand("get", "Show the devices of a kind");
  add_kind(command, options->kind)->required();
  add_source_options(command, options->source);
  command.callback([options, &action] { action = [options] { return get(*options); }; });
}

}  // namespace mcstore
