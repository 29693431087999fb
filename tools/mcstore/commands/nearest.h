// What a user may have meant by a word that is none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mcstore {

// "; did you mean 'get'?" with the name that is most like the word; nothing when none is.
std::string suggestion(std::string_view word, const std::vector<std::string> &names);

}  // namespace mcstore
