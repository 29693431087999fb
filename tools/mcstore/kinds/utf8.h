// Texts as UTF-8, whatever the locale.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace mcstore {

struct Utf8Character {
  std::optional<char32_t> code;  // none for a byte that begins no character
  size_t length;                 // in bytes, 1 for such a byte
};

// What the text, which must not be empty, begins with. Neither surrogates nor forms that are longer than they need be
// are characters.
Utf8Character first_character(std::string_view text);

}  // namespace mcstore
