#include "mcstore/views/hex.h"

#include <fmt/core.h>

#include <algorithm>

namespace mcstore {

std::string hex_dump(Record bytes) {
  constexpr size_t kBytesInLine = 16;
  std::string lines;
  for (size_t offset = 0; offset < bytes.size(); offset += kBytesInLine) {
    std::string digits;
    std::string characters;
    for (const uint8_t byte : bytes.subspan(offset, std::min(kBytesInLine, bytes.size() - offset))) {
      digits += fmt::format("{:02x} ", byte);
      characters += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    lines += fmt::format("{:08x}  {:<48} |{}|\n", offset, digits, characters);
  }
  return lines;
}

}  // namespace mcstore
