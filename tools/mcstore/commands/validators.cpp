#include "mcstore/commands/validators.h"

#include <fmt/core.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "mcstore/kinds/nearest.h"
#include "mcstore/kinds/value.h"

namespace mcstore {
namespace {

std::string not_found(const std::string &path, mode_t type, const char *what) {
  if (path.empty()) return fmt::format("'' is not a {}", what);
  struct stat about = {};
  if (stat(path.c_str(), &about) != 0) return fmt::format("{}: {}", path, strerror(errno));
  return (about.st_mode & S_IFMT) == type ? "" : fmt::format("{} is not a {}", path, what);
}

template <typename Number>
std::string not_between(const std::string &text, Number least, Number greatest) {
  Number number = {};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool is_number = result.ec == std::errc() && result.ptr == text.data() + text.size();
  if (is_number && number >= least && number <= greatest) return "";
  return fmt::format("'{}' is not a number from {} to {}", text, least, greatest);
}

}  // namespace

CLI::Validator existing_file() {
  return {[](std::string &path) { return not_found(path, S_IFREG, "file"); }, "", ""};
}

CLI::Validator existing_directory() {
  return {[](std::string &path) { return not_found(path, S_IFDIR, "directory"); }, "", ""};
}

CLI::Validator one_of(std::vector<std::string> names) {
  const std::string list = joined(names, ",");
  return {[names = std::move(names)](std::string &word) {
            return std::ranges::count(names, word) > 0
                       ? ""
                       : fmt::format("'{}' is none of {}{}", word, joined(names, ", "), suggestion(word, names));
          },
          '{' + list + '}', ""};
}

CLI::Validator number_between(double least, double greatest) {
  return {[=](std::string &text) { return not_between(text, least, greatest); }, "", ""};
}

CLI::Validator whole_number_between(uint64_t least, uint64_t greatest) {
  return {[=](std::string &text) {
            // The library would read an octal number.
            if (text.size() > 1 && text[0] == '0' && isdigit(static_cast<unsigned char>(text[1])) != 0)
              return fmt::format("'{}' begins with a needless 0", text);
            return not_between(text, least, greatest);
          },
          "", ""};
}

}  // namespace mcstore
