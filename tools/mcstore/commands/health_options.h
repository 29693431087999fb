// What the commands that judge have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/source.h"

namespace mcstore {

struct HealthOptions {
  std::string stale;                   // as parse_duration() takes it; empty: data are never too old
  std::vector<std::string> warnings;   // as Threshold::parse() takes them
  std::vector<std::string> criticals;  // likewise
  std::vector<std::string> ignored;    // names of devices
};

// --stale, --warning, --critical and --ignore.
void add_health_options(CLI::App &command, HealthOptions &options);

// What follows from them; ages count from now.
Standards standards(const HealthOptions &options);

}  // namespace mcstore
