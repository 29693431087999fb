// mcstore decode: copies of store files become text files.

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/validators.h"
#include "mcstore/decode/decoding.h"
#include "mcstore/decode/progress.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/source/directories.h"
#include "mcstore/source/place.h"

namespace mcstore {
namespace {

struct DecodeOptions {
  std::string plugin;  // as load_plugin() takes it
  std::string input_dir;
  std::string output_dir;
  std::vector<std::string> kinds;  // empty for all that can be decoded
};

std::vector<std::string> decodable_kinds() {
  std::vector<std::string> names;
  for (const Kind &kind : kinds())
    if (!kind.decoder.empty()) names.emplace_back(kind.name);
  return names;
}

// The files may also be in var below the directory, as they are below a root.
std::string directory_of_stores(const std::string &directory) {
  const Place place(directory);
  std::error_code ignored;
  return std::filesystem::is_directory(place.var(), ignored) ? place.var() : directory;
}

int decode(const DecodeOptions &options) {
  const std::string input_dir = directory_of_stores(options.input_dir);
  std::vector<const Kind *> chosen;
  for (const Kind &kind : kinds())
    if (!kind.decoder.empty() && (options.kinds.empty() || std::ranges::count(options.kinds, kind.name) > 0))
      chosen.push_back(&kind);
  make_directories(options.output_dir);

  uint64_t total = 0;
  for (const Kind *kind : chosen) total += input_size(input_dir, *kind);

  std::string report;
  size_t texts = 0;
  size_t failures = 0;
  {
    ProgressBar bar(total);
    uint64_t done = 0;
    Decoding decoding(options.plugin, input_dir, options.output_dir, [&](uint64_t bytes) { bar.show(done + bytes); });
    for (const Kind *kind : chosen) {
      const Decoded decoded = decoding.decode(*kind);
      report += printable(fmt::format("{}: {}", kind->name, decoded.text)) + '\n';
      if (decoded.as == DecodedAs::kWritten || decoded.as == DecodedAs::kWrittenOfDamaged) ++texts;
      if (decoded.as == DecodedAs::kFailed || decoded.as == DecodedAs::kWrittenOfDamaged) ++failures;
      done += input_size(input_dir, *kind);
    }
  }
  print(report);
  if (texts == 0) return complain(fmt::format("nothing was decoded from {}", input_dir), kFailure);
  return failures == 0 ? kSuccess : kFailure;
}

}  // namespace

void add_decode(CLI::App &app, Action &action) {
  const auto options = std::make_shared<DecodeOptions>();
  CLI::App &command = *app.add_subcommand("decode", "Turn copies of store files into text files");
  command
      .add_option("INPUT_DIR", options->input_dir,
                  "Where the copies are, under the files' own names; or the directory above var")
      ->required()
      ->type_name("")
      ->check(existing_directory());
  command.add_option("OUTPUT_DIR", options->output_dir, "Where the text goes; made if needed")
      ->required()
      ->type_name("");
  command.add_option("KIND", options->kinds, "What to decode; everything if there is none")
      ->type_name("")
      ->check(one_of(decodable_kinds()));
  add_plugin_option(command, options->plugin);
  command.footer(
      "Examples:\n"
      "  mcstore decode DIR text\n"
      "  mcstore decode DIR/var text\n"
      "  mcstore decode DIR text drives nvme-drives");
  command.callback([options, &action] { action = [options] { return decode(*options); }; });
}

}  // namespace mcstore
