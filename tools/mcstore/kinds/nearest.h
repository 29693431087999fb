// The word that a user may have meant.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace mcstore {

// Those of the words that are most like this one, at most three, as a list: "TEMP, TYPE". Case does not matter.
std::string nearest(std::string_view word, std::span<const std::string> words);

// "; did you mean 'get'?" with the word that is most like this one; nothing when none is much like it.
std::string suggestion(std::string_view word, std::span<const std::string> words);

bool equal_but_for_case(std::string_view one, std::string_view other);

}  // namespace mcstore
