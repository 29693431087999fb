#include "mcstore/kinds/printable.h"

#include <algorithm>
#include <cuchar>
#include <cwctype>
#include <iterator>

namespace mcstore {
namespace {

constexpr char kDigits[] = "0123456789abcdef";

struct CodePoints {
  char32_t first;
  char32_t last;
};

// Marks that change the direction of writing or the form of their neighbours, and characters without anything to see.
constexpr CodePoints kDeceptive[] = {
    {0x00AD, 0x00AD}, {0x034F, 0x034F}, {0x061C, 0x061C}, {0x115F, 0x1160}, {0x17B4, 0x17B5},
    {0x180B, 0x180F}, {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F}, {0x2800, 0x2800},
    {0x3164, 0x3164}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0}, {0xE0000, 0x10FFFF},
};
static_assert(std::ranges::is_sorted(kDeceptive, {}, &CodePoints::first));

}  // namespace

bool is_deceptive(char32_t character) {
  const auto range = std::ranges::lower_bound(kDeceptive, character, {}, &CodePoints::last);
  return range != std::end(kDeceptive) && range->first <= character;
}

std::string escaped(std::string_view bytes) {
  std::string result;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    result += "\\x";
    result += kDigits[byte >> 4];
    result += kDigits[byte & 0xF];
  }
  return result;
}

std::string printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    if (text[0] >= 0x20 && text[0] < 0x7F) {
      result += text[0];
      text.remove_prefix(1);
      continue;
    }
    char32_t character = 0;
    mbstate_t state = {};
    const size_t length = mbrtoc32(&character, text.data(), text.size(), &state);
    const bool is_character = length != 0 && length <= text.size();
    const std::string_view bytes = text.substr(0, is_character ? length : 1);
    const bool is_shown = is_character && iswprint(character) != 0 && !is_deceptive(character);
    result += is_shown ? std::string(bytes) : escaped(bytes);
    text.remove_prefix(bytes.size());
  }
  return result;
}

}  // namespace mcstore
