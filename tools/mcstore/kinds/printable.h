// Texts of devices, made fit for terminals and logs.
#pragma once

#include <string>
#include <string_view>

namespace mcstore {

// The text without what could disturb a terminal or mislead its reader: control characters, marks that change the
// direction of writing, and bytes that are no character in the locale's encoding become \x1b and the like.
std::string printable(std::string_view text);

}  // namespace mcstore
