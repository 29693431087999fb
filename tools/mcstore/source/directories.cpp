#include "mcstore/source/directories.h"

#include <filesystem>
#include <system_error>

namespace mcstore {

void make_directories(const std::string &path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) throw std::system_error(error, "cannot make " + path);
}

}  // namespace mcstore
