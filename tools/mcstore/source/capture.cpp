#include "mcstore/source/capture.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "mcstore/kinds/kind.h"
#include "mcstore/source/digest.h"
#include "mcstore/source/failure.h"
#include "mcstore/source/whole_file.h"

namespace mcstore {
namespace {

namespace fs = std::filesystem;

bool is_capturable(std::string_view path) {
  return std::ranges::count(kUnlockedFiles, path) > 0 ||
         std::ranges::any_of(kinds(), [&](const Kind &kind) { return !path.empty() && kind.store_path == path; });
}

// The paths of all files in the directory, as the plug-in knows them. Throws Damaged for a link, which would make the
// plug-in read, or write, elsewhere.
std::vector<std::string> files_in(const std::string &directory) {
  std::vector<std::string> files;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    const fs::file_type type = entry->symlink_status(error).type();
    if (type == fs::file_type::regular) files.push_back('/' + entry->path().lexically_relative(directory).string());
    if (type != fs::file_type::regular && type != fs::file_type::directory)
      throw Damaged(fmt::format("{} is neither a file nor a directory, and a capture holds nothing else",
                                entry->path().string()));
  }
  if (error) throw Unreadable(fmt::format("cannot look through {}: {}", directory, error.message()));
  return files;
}

void check_file(const std::string &directory, const CapturedFile &file) {
  const std::string path = directory + file.path;
  const std::vector<uint8_t> bytes = read_whole(path).bytes;
  if (bytes.size() != file.size)
    throw Damaged(fmt::format("{} has {} bytes, and had {} when it was captured", path, bytes.size(), file.size));
  if (sha256(bytes) != file.sha256)
    throw Damaged(fmt::format("{} is not as it was captured: its SHA-256 is another one", path));
}

// What the plug-in could read must be what was captured, be it a store or a switch such as that of its simulation.
void check_files(const std::string &directory, const std::vector<std::string> &files, const Manifest &manifest) {
  for (const CapturedFile &file : manifest.files) {
    if (!is_capturable(file.path))
      throw Damaged(fmt::format("{}{}: it lists {}, which no capture holds", directory, kManifestPath, file.path));
    check_file(directory, file);
  }
  for (const std::string &path : files)
    if (path != kManifestPath && std::ranges::find(manifest.files, path, &CapturedFile::path) == manifest.files.end())
      throw Damaged(fmt::format("{}{} is not listed in {}{}", directory, path, directory, kManifestPath));
}

}  // namespace

std::optional<Manifest> captured_at(const std::string &directory) {
  const std::string path = directory + std::string(kManifestPath);
  std::error_code ignored;
  if (!fs::exists(fs::symlink_status(path, ignored))) return {};
  const std::vector<std::string> files = files_in(directory);
  try {
    const std::vector<uint8_t> bytes = read_whole(path).bytes;
    Manifest manifest = parse_manifest({bytes.begin(), bytes.end()});
    check_files(directory, files, manifest);
    return manifest;
  } catch (const InvalidManifest &error) {
    throw Damaged(fmt::format("{}: {}", path, error.what()));
  } catch (const Missing &error) {
    throw Damaged(fmt::format("{}, and {} lists it", error.what(), path));
  }
}

}  // namespace mcstore
