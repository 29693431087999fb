#include "mcstore/kinds/nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "mcstore/kinds/value.h"

namespace mcstore {
namespace {

constexpr size_t kMostNamed = 3;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// How many letters must be changed, added or removed to come from one word to the other.
size_t distance(std::string_view one, std::string_view other) {
  std::vector<size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < one.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < other.size(); ++j) {
      const size_t changed = diagonal + (lower(one[i]) == lower(other[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// A word that goes on where this one ends is what was meant.
size_t difference(std::string_view word, std::string_view other) {
  return !word.empty() && other.starts_with(word) ? 0 : distance(word, other);
}

}  // namespace

std::string nearest(std::string_view word, std::span<const std::string> words) {
  std::vector<std::pair<size_t, size_t>> found;  // distance and position
  for (size_t i = 0; i < words.size(); ++i) found.emplace_back(distance(word, words[i]), i);
  std::ranges::sort(found);
  std::vector<std::string> named;
  for (const auto &[far, i] : found)
    if (named.size() < kMostNamed && far == found.front().first) named.push_back(words[i]);
  return joined(named, ", ");
}

std::string suggestion(std::string_view word, std::span<const std::string> words) {
  const auto meant = std::ranges::min_element(words, {}, [&](const auto &other) { return difference(word, other); });
  const size_t tolerable = std::max<size_t>(2, word.size() / 3);
  if (meant == words.end() || difference(word, *meant) > tolerable) return {};
  return "; did you mean '" + *meant + "'?";
}

bool equal_but_for_case(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace mcstore
