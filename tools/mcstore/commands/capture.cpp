// mcstore capture: copies of what the plug-in reads, to look at elsewhere.

#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include "mcstore/capture/new_directory.h"
#include "mcstore/capture/snapshot.h"
#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/json/manifest.h"
#include "mcstore/kinds/unit.h"
#include "mcstore/source/capture.h"
#include "mcstore/source/digest.h"

namespace mcstore {
namespace {

struct CaptureOptions {
  std::string directory;
  std::string from;
  Patience patience;
};

std::string host_name() {
  char name[256] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

Manifest manifest_of(const std::vector<CopiedFile> &files) {
  Manifest manifest = {.host = host_name(), .version = MCSTORE_VERSION, .time = time(nullptr), .files = {}};
  for (const auto &[path, content] : files)
    manifest.files.push_back(
        {.path = path, .size = content.bytes.size(), .modified = content.modified, .sha256 = sha256(content.bytes)});
  return manifest;
}

std::string no_new_directory(const std::string &path) {
  if (path.empty()) return "the directory to make needs a name";
  struct stat about = {};
  return lstat(path.c_str(), &about) == 0 ? fmt::format("{} exists already", path) : "";
}

int capture(const CaptureOptions &options) {
  const Place place(options.from);
  const std::vector<CopiedFile> files = take_snapshot(place, options.patience);
  if (files.empty()) return complain(fmt::format("there is no store file in {}", place.directory()), kNothingThere);

  const Manifest manifest = manifest_of(files);
  const std::string text = to_json(manifest);
  NewDirectory directory(options.directory);
  for (const auto &[path, content] : files) directory.write(path, content.bytes, content.modified);
  directory.write(std::string(kManifestPath), {reinterpret_cast<const uint8_t *>(text.data()), text.size()},
                  {.tv_sec = manifest.time, .tv_nsec = 0});
  directory.finish();
  return kSuccess;
}

}  // namespace

void add_capture(CLI::App &app, Action &action) {
  const auto options = std::make_shared<CaptureOptions>();
  CLI::App &command = *app.add_subcommand("capture", "Copy what the inventory is read from into a new directory");
  command.add_option("DIR", options->directory, "The directory to make; every command reads it with --from")
      ->required()
      ->type_name("")
      ->check(CLI::Validator(no_new_directory, "", ""));
  add_from_option(command, options->from);
  add_timeout_option(command, options->patience);
  command.footer(
      "Examples:\n"
      "  mcstore capture today\n"
      "  mcstore capture today && tar -czf today.tar.gz today\n"
      "  mcstore capture today --from DIR --timeout 60");
  command.callback([options, &action] { action = [options] { return capture(*options); }; });
}

}  // namespace mcstore
