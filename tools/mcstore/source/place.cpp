#include "mcstore/source/place.h"

#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/source/capture.h"

namespace mcstore {
namespace {

constexpr std::string_view kVar = "/var";

std::string file_name(std::string_view path) { return std::filesystem::path(path).filename().string(); }

std::string without_slashes_at_end(const std::string &path) { return path.substr(0, path.find_last_not_of('/') + 1); }

bool has_store_files(const std::string &directory) {
  return std::ranges::any_of(kinds(), [&](const Kind &kind) {
    return !kind.store_path.empty() && access((directory + '/' + file_name(kind.store_path)).c_str(), F_OK) == 0;
  });
}

}  // namespace

Place::Place(const std::string &directory)
    : directory_(directory.empty() ? "/" : directory),
      root_(without_slashes_at_end(directory)),
      captured_(root_.empty() ? std::nullopt : captured_at(root_)),
      var_(!root_.empty() && !captured_ && has_store_files(root_) ? root_ : root_ + std::string(kVar)) {}

std::string Place::real(std::string_view path) const {
  const bool is_in_var = path.starts_with(kVar) && path.substr(kVar.size()).starts_with('/');
  return is_in_var ? var_ + std::string(path.substr(kVar.size())) : root_ + std::string(path);
}

std::optional<std::string> Place::resolve(const char *, const std::string &path) {
  const std::string target = path.starts_with('/') ? real(path) : path;
  struct stat about = {};
  if (stat(target.c_str(), &about) != 0 || !S_ISFIFO(about.st_mode)) return target;
  errno = ENXIO;
  return {};
}

void Place::log(int, const std::string &line) {
  const std::string_view text = line;
  fprintf(stderr, "syslog: %s\n", printable(text.substr(0, text.find_last_not_of('\n') + 1)).c_str());
}

}  // namespace mcstore
