// What the tool does, once the command line is understood. Each command returns the program's exit code.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mcstore/session.h"

namespace mcstore {

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kUsage = 2;

// Instead of a kind's name: every kind, one after the other.
inline constexpr char kAllKinds[] = "all";

// The names that the command line offers; it need not see the tables of the kinds.
std::vector<std::string> kind_names();
std::vector<std::string> decodable_kind_names();

struct GetOptions {
  std::string kind;
  std::string format = "table";
};

struct WatchOptions {
  std::string kind = kAllKinds;
  double interval = 5;
  uint64_t count = 0;  // of calls; 0 never ends
};

struct CollectOptions {
  std::string inventory;
  std::string root;
  std::string at;  // as parse_time() takes it; empty for now
};

struct DecodeOptions {
  std::string plugin;  // as load_plugin() takes it
  std::string input_dir;
  std::string output_dir;
  std::vector<std::string> kinds;  // empty for all that can be decoded
};

int get(const SessionOptions &session_options, const GetOptions &options);
int watch(const SessionOptions &session_options, const WatchOptions &options);
int collect(const CollectOptions &options);
int decode(const DecodeOptions &options);

}  // namespace mcstore
