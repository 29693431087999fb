#include "mcstore/commands/health_options.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <utility>

#include "mcstore/kinds/unit.h"

namespace mcstore {
namespace {

std::string complaint_about_threshold(const std::string &text) {
  try {
    Threshold::parse(text, Health::kWarning);
    return "";
  } catch (const std::invalid_argument &error) {
    return error.what();
  }
}

std::string complaint_about_duration(const std::string &text) {
  return parse_duration(text) ? "" : '\'' + text + "' is not a time such as 90s, 15m, 6h or 2d";
}

// The data of a capture are as old as they were then.
Standards standards(const HealthOptions &options, const Place &place) {
  Standards result = {.now = place.captured() ? place.captured()->time : time(nullptr)};
  if (!options.stale.empty()) result.stale = parse_duration(options.stale);
  for (const std::string &text : options.warnings)
    result.thresholds.push_back(Threshold::parse(text, Health::kWarning));
  for (const std::string &text : options.criticals)
    result.thresholds.push_back(Threshold::parse(text, Health::kCritical));
  return result;
}

}  // namespace

void add_health_options(CLI::App &command, HealthOptions &options) {
  const CLI::Validator is_threshold(complaint_about_threshold, "", "");
  command.add_option("--stale", options.stale, "What is older than this (90s, 15m, 6h, 2d) is not believed")
      ->type_name("TIME")
      ->check(CLI::Validator(complaint_about_duration, "", ""));
  command.add_option("--warning", options.warnings, "WARNING outside of a range: drives.media_err_count=10")
      ->type_name("KIND.FIELD=RANGE")
      ->check(is_threshold);
  command.add_option("--critical", options.criticals, "CRITICAL outside of a range: nvme-drives.temperature=70")
      ->type_name("KIND.FIELD=RANGE")
      ->check(is_threshold);
  command.add_option("--ignore", options.ignored, "Pass over the device of this name; may be given several times")
      ->type_name("DEVICE");
}

Survey survey(const SourceOptions &source_options, const HealthOptions &options, const std::vector<const Kind *> &kinds,
              const std::vector<std::string> &required) {
  Source source(source_options);
  const Judge judge(standards(options, source.place()));
  Surveyor surveyor(judge, options.ignored);
  for (const Kind *kind : kinds) {
    const KindInventory inventory = source.read(*kind);
    surveyor.add(inventory);
    if (!inventory.has_data() && std::ranges::count(required, kind->name) > 0) surveyor.miss(*kind);
  }
  return std::move(surveyor).finish();
}

}  // namespace mcstore
