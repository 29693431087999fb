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

bool is_capturable(std::string_view path) {
  return std::ranges::count(kUnlockedFiles, path) > 0 ||
         std::ranges::any_of(kinds(), [&](const Kind &kind) { return !path.empty() && kind.store_path == path; });
}

// A link would make the plug-in read, or write, elsewhere.
void refuse_links(const std::string &directory) {
  namespace fs = std::filesystem;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    const fs::file_type type = entry->symlink_status(error).type();
    if (type != fs::file_type::regular && type != fs::file_type::directory)
      throw Damaged(fmt::format("{} is neither a file nor a directory, and a capture holds nothing else",
                                entry->path().string()));
  }
  if (error) throw Unreadable(fmt::format("cannot look through {}: {}", directory, error.message()));
}

void check_file(const std::string &directory, const CapturedFile &file) {
  const std::string path = directory + file.path;
  const std::vector<uint8_t> bytes = read_whole(path).bytes;
  if (bytes.size() != file.size)
    throw Damaged(fmt::format("{} has {} bytes, and had {} when it was captured", path, bytes.size(), file.size));
  if (sha256(bytes) != file.sha256)
    throw Damaged(fmt::format("{} is not as it was captured: its SHA-256 is another one", path));
}

// What the plug-in could read must be what was captured.
void check_files(const std::string &directory, const Manifest &manifest) {
  const auto is_listed = [&](std::string_view path) {
    return std::ranges::any_of(manifest.files, [&](const CapturedFile &file) { return file.path == path; });
  };
  const auto refuse_unlisted = [&](std::string_view path) {
    if (path.empty() || is_listed(path) || !std::filesystem::exists(directory + std::string(path))) return;
    throw Damaged(fmt::format("{}{} is not listed in {}{}", directory, path, directory, kManifestPath));
  };
  for (const CapturedFile &file : manifest.files) {
    if (!is_capturable(file.path))
      throw Damaged(fmt::format("{}{}: it lists {}, which no capture holds", directory, kManifestPath, file.path));
    check_file(directory, file);
  }
  for (const Kind &kind : kinds()) refuse_unlisted(kind.store_path);
  for (const std::string_view path : kUnlockedFiles) refuse_unlisted(path);
}

}  // namespace

std::optional<Manifest> captured_at(const std::string &directory) {
  const std::string path = directory + std::string(kManifestPath);
  std::error_code ignored;
  if (!std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) return {};
  refuse_links(directory);
  try {
    const std::vector<uint8_t> bytes = read_whole(path).bytes;
    Manifest manifest = parse_manifest({bytes.begin(), bytes.end()});
    check_files(directory, manifest);
    return manifest;
  } catch (const InvalidManifest &error) {
    throw Damaged(fmt::format("{}: {}", path, error.what()));
  } catch (const Missing &error) {
    throw Damaged(fmt::format("{}, and {} lists it", error.what(), path));
  }
}

}  // namespace mcstore
