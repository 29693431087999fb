// Directories that are made when they are needed.
#pragma once

#include <string>

namespace mcstore {

// Makes the directory and those above it, as far as they are missing. Throws std::system_error.
void make_directories(const std::string &path);

}  // namespace mcstore
