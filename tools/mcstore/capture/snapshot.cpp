#include "mcstore/capture/snapshot.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "mcstore/kinds/kind.h"
#include "mcstore/source/capture.h"
#include "mcstore/source/failure.h"

namespace mcstore {
namespace {

// The store files that share a lock.
struct Family {
  std::string_view lock_path;
  std::vector<std::string_view> store_paths = {};
};

std::vector<Family> families() {
  std::vector<Family> all;
  for (const Kind &kind : kinds()) {
    if (kind.store_path.empty()) continue;
    auto family = std::ranges::find(all, kind.lock_path, &Family::lock_path);
    if (family == all.end()) family = all.insert(all.end(), {kind.lock_path});
    family->store_paths.push_back(kind.store_path);
  }
  return all;
}

bool is_found(const std::string &path) {
  std::error_code error;
  const bool found = std::filesystem::exists(path, error);
  if (error) throw Unreadable(fmt::format("cannot read {}: {}", path, error.message()));
  return found;
}

void copy_if_there(const Place &place, std::string_view path, std::vector<CopiedFile> &files) {
  try {
    files.push_back({std::string(path), read_whole(place.real(path))});
  } catch (const Missing &) {  // whoever reads the capture will not find it either
  }
}

void copy_family(const Place &place, const Family &family, Patience &patience, std::vector<CopiedFile> &files) {
  const auto is_there = [&](std::string_view path) { return is_found(place.real(path)); };
  const auto any = std::ranges::find_if(family.store_paths, is_there);
  if (any == family.store_paths.end()) return;
  if (!is_there(family.lock_path))
    throw Missing(fmt::format("{} does not exist: without it {} cannot be locked, and is not copied",
                              place.real(family.lock_path), place.real(*any)));
  const StoreLock lock(place.real(family.lock_path), patience);
  for (const std::string_view path : family.store_paths) copy_if_there(place, path, files);
}

}  // namespace

std::vector<CopiedFile> take_snapshot(const Place &place, Patience patience) {
  std::vector<CopiedFile> files;
  for (const Family &family : families()) copy_family(place, family, patience, files);
  if (files.empty()) return files;
  for (const std::string_view path : kUnlockedFiles) copy_if_there(place, path, files);
  return files;
}

}  // namespace mcstore
