// mcstore check: what a monitoring system asks.

#include <algorithm>
#include <cstdio>
#include <memory>

#include "mcstore/commands/command.h"
#include "mcstore/commands/health_options.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/validators.h"
#include "mcstore/views/check_line.h"

namespace mcstore {
namespace {

struct CheckOptions {
  SourceOptions source;
  HealthOptions health;
  std::vector<std::string> kinds;  // empty for all
  std::vector<std::string> required;
};

// What monitoring systems expect: OK, WARNING, CRITICAL and UNKNOWN are 0 to 3.
int exit_code_for(Health health) {
  switch (health) {
    case Health::kOk:
      return 0;
    case Health::kWarning:
      return 1;
    case Health::kCritical:
      return 2;
    default:
      return 3;
  }
}

// A required kind is asked for as well.
std::vector<const Kind *> asked_kinds(const CheckOptions &options) {
  std::vector<const Kind *> asked;
  for (const Kind &kind : kinds())
    if (options.kinds.empty() || std::ranges::count(options.kinds, kind.name) > 0 ||
        std::ranges::count(options.required, kind.name) > 0)
      asked.push_back(&kind);
  return asked;
}

int check(const CheckOptions &options) {
  const Survey result = survey(options.source, options.health, asked_kinds(options), options.required);
  print(check_output(result));
  return exit_code_for(result.health);
}

}  // namespace

int complain_as_check(const std::string &problem) {
  fputs(check_failure(problem).c_str(), stdout);
  return exit_code_for(Health::kUnknown);
}

void add_check(CLI::App &app, Action &action) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App &command = *app.add_subcommand("check", "Tell a monitoring system whether the storage is healthy");
  command.add_option("--kind", options->kinds, "Check this kind alone; may be given several times")
      ->type_name("KIND")
      ->check(one_of(kind_names()));
  command.add_option("--require", options->required, "A kind that must be there; may be given several times")
      ->type_name("KIND")
      ->check(one_of(kind_names()));
  add_health_options(command, options->health);
  add_source_options(command, options->source);
  command.footer(
      "Exit codes: 0 OK; 1 WARNING; 2 CRITICAL; 3 UNKNOWN, also when the check could not be made.\n"
      "\n"
      "Examples:\n"
      "  mcstore check\n"
      "  mcstore check --kind drives --require drives --stale 1h\n"
      "  mcstore check --ignore c0/e62/s2 --critical nvme-drives.temperature=70");
  command.callback([options, &action] { action = [options] { return check(*options); }; });
}

}  // namespace mcstore
