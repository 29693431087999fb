// A file's bytes, all at once.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace mcstore {

struct WholeFile {
  std::vector<uint8_t> bytes;
  struct timespec modified;
};

// Reads a regular file that is not much larger than any of the plug-in's can be. Throws Missing or Unreadable.
WholeFile read_whole(const std::string &path);

}  // namespace mcstore
