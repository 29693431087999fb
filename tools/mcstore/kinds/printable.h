// Texts of devices, made fit for terminals and logs.
#pragma once

#include <string>
#include <string_view>

namespace mcstore {

// Is it a character that is not seen itself, or that changes how others are shown?
bool is_deceptive(char32_t character);

// The bytes as \x1b and the like.
std::string escaped(std::string_view bytes);

// The text without what could disturb a terminal or mislead its reader: control characters, deceptive ones, and bytes
// that are no character in the locale's encoding become \x1b and the like.
std::string printable(std::string_view text);

}  // namespace mcstore
