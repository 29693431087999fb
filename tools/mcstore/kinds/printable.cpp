#include "mcstore/kinds/printable.h"

#include <cwchar>
#include <cwctype>

namespace mcstore {
namespace {

constexpr char kDigits[] = "0123456789abcdef";

// Characters that are not seen themselves but change how others are shown.
bool is_deceptive(wint_t character) {
  return character == 0x00AD || character == 0x061C || (character >= 0x200B && character <= 0x200F) ||
         (character >= 0x2028 && character <= 0x202E) || (character >= 0x2060 && character <= 0x206F) ||
         character == 0xFEFF || character >= 0xE0000;
}

void append_escaped(std::string &result, std::string_view bytes) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    result += "\\x";
    result += kDigits[byte >> 4];
    result += kDigits[byte & 0xF];
  }
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    if (text[0] >= 0x20 && text[0] < 0x7F) {
      result += text[0];
      text.remove_prefix(1);
      continue;
    }
    wchar_t character = 0;
    mbstate_t state = {};
    const size_t length = mbrtowc(&character, text.data(), text.size(), &state);
    const bool is_character = length != 0 && length <= text.size();
    const std::string_view bytes = text.substr(0, is_character ? length : 1);
    const auto code = static_cast<wint_t>(character);
    if (is_character && iswprint(code) != 0 && !is_deceptive(code))
      result += bytes;
    else
      append_escaped(result, bytes);
    text.remove_prefix(bytes.size());
  }
  return result;
}

}  // namespace mcstore
