#include "mcstore/commands/nearest.h"

#include <fmt/core.h>

#include <algorithm>
#include <numeric>

namespace mcstore {
namespace {

// How many letters must be added, dropped or replaced to make one word of the other.
size_t distance(std::string_view one, std::string_view other) {
  std::vector<size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < one.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < other.size(); ++j) {
      const size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

// A name that goes on where the word ends is what was meant.
size_t difference(std::string_view word, std::string_view name) {
  return !word.empty() && name.starts_with(word) ? 0 : distance(word, name);
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string> &names) {
  const auto nearest = std::ranges::min_element(
      names, {}, [&](const std::string &name) { return difference(word.substr(0, name.size() + 8), name); });
  const size_t tolerable = std::max<size_t>(2, word.size() / 3);
  if (nearest == names.end() || difference(word, *nearest) > tolerable) return "";
  return fmt::format("; did you mean '{}'?", *nearest);
}

}  // namespace mcstore
