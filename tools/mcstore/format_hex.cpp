#include <fmt/core.h>

#include <algorithm>
#include <string_view>

#include "mcstore/format.h"

namespace mcstore {
namespace {

constexpr size_t kBytesInLine = 16;

}  // namespace

std::string format_hex(const std::string &bytes) {
  std::string lines;
  for (size_t offset = 0; offset < bytes.size(); offset += kBytesInLine) {
    std::string digits;
    std::string characters;
    for (const char c : std::string_view(bytes).substr(offset, kBytesInLine)) {
      const auto byte = static_cast<unsigned char>(c);
      digits += fmt::format("{:02x} ", byte);
      characters += byte >= 0x20 && byte < 0x7F ? c : '.';
    }
    lines += fmt::format("{:08x}  {:<48} |{}|\n", offset, digits, characters);
  }
  return lines;
}

}  // namespace mcstore
