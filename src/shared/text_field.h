// Texts of records and summaries: fixed-width fields, padded with NULs.
#pragma once

#include <cstddef>
#include <cstring>

namespace mcserver {

// The text up to its NUL, at most the whole field; the rest becomes zero.
template <size_t Width>
void copy_text(char (&to)[Width], const char (&from)[Width]) {
  const size_t length = strnlen(from, Width);
  memcpy(to, from, length);
  memset(to + length, 0, Width - length);
}

}  // namespace mcserver
