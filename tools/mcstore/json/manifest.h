// What a capture says of itself, in JSON:
//
//   {"format": 1, "host": "server-7", "tool": {"name": "mcstore", "version": "1.0.0"}, "time": "2026-03-02T10:00:00Z",
//    "files": [{"path": "/var/storctlr_info", "size": 1295, "modified": "2026-03-02T09:58:00Z", "sha256": "..."}]}
#pragma once

#include <cstdint>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

namespace mcstore {

struct CapturedFile {
  std::string path;  // as the plug-in knows it
  uint64_t size;
  struct timespec modified;
  std::string sha256;  // hexadecimal digits
};

struct Manifest {
  std::string host;
  std::string version;  // of the tool
  time_t time;
  std::vector<CapturedFile> files;
};

class InvalidManifest : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string to_json(const Manifest &manifest);

// Members that are not known are passed over. Throws InvalidManifest, which says where and what.
Manifest parse_manifest(const std::string &text);

}  // namespace mcstore
