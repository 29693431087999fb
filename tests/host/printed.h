// What a function prints to a stream.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace tests {

// Calls `print` with a stream. That `print` leaves it open shows in that it can be closed.
template <typename Print>
std::string printed(Print print) {
  char *text = nullptr;
  size_t size = 0;
  FILE *const stream = open_memstream(&text, &size);
  print(stream);
  fclose(stream);
  std::string result(text, size);
  free(text);
  return result;
}

}  // namespace tests
