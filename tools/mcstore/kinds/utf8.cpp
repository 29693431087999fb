#include "mcstore/kinds/utf8.h"

#include <cstdint>

namespace mcstore {
namespace {

// The characters of a length: how their first byte looks, and the least of them.
struct Form {
  uint8_t mask;
  uint8_t first_byte;
  char32_t least;
};

constexpr Form kForms[] = {{0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}};

bool is_character(char32_t code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

// The character of that form and length at the beginning of the text.
std::optional<char32_t> decoded(std::string_view text, const Form &form, size_t length) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  if (text.size() < length || (byte(0) & form.mask) != form.first_byte) return {};
  char32_t code = byte(0) & static_cast<uint8_t>(~form.mask);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  return code >= form.least && is_character(code) ? std::optional(code) : std::nullopt;
}

}  // namespace

Utf8Character first_character(std::string_view text) {
  size_t length = 0;
  for (const Form &form : kForms)
    if (const std::optional<char32_t> code = decoded(text, form, ++length)) return {.code = code, .length = length};
  return {.code = {}, .length = 1};
}

}  // namespace mcstore
