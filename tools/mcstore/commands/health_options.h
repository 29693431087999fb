// What the commands that judge have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "mcstore/health/survey.h"
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

// Reads these kinds and judges them. Of the required ones, those without data are missed.
Survey survey(const SourceOptions &source_options, const HealthOptions &options, const std::vector<const Kind *> &kinds,
              const std::vector<std::string> &required = {});

}  // namespace mcstore
