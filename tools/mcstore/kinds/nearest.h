// The word that a user may have meant.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace mcstore {

// Those of the words that are most like this one, at most three, as a list: "TEMP, TYPE". Case does not matter.
std::string nearest(std::string_view word, std::span<const std::string> words);

bool equal_but_for_case(std::string_view one, std::string_view other);

}  // namespace mcstore
