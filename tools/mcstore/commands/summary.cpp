// mcstore summary: how the storage is, on one screen.

#include "mcstore/views/summary.h"

#include <fmt/core.h>

#include <algorithm>
#include <memory>

#include "mcstore/commands/command.h"
#include "mcstore/commands/health_options.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"

namespace mcstore {
namespace {

struct SummaryOptions {
  SourceOptions source;
  HealthOptions health;
  ColourChoice colour = ColourChoice::kAuto;
};

bool has(const Survey &survey, std::initializer_list<KindStatus> statuses) {
  return std::ranges::any_of(survey.kinds, [&](const KindSurvey &of_kind) {
    return std::ranges::find(statuses, of_kind.status) != statuses.end();
  });
}

int summarise(const SummaryOptions &options) {
  const Survey result = survey(options.source, options.health, chosen_kinds(kAllKinds));
  const std::optional<size_t> width = terminal_width();
  print(summary(result, {.width = width, .has_colour = wants_colour(options.colour, width.has_value())}));
  if (has(result, {KindStatus::kUnreadable, KindStatus::kDamaged})) return kFailure;
  if (has(result, {KindStatus::kFine, KindStatus::kSimulated})) return kSuccess;
  return complain(nothing_there(options.source, kNoStoreFiles), kNothingThere);
}

}  // namespace

void add_summary(CLI::App &app, Action &action) {
  const auto options = std::make_shared<SummaryOptions>();
  CLI::App &command = *app.add_subcommand("summary", "Show on one screen what needs attention, and how much there is");
  add_health_options(command, options->health);
  add_colour_option(command, options->colour);
  add_source_options(command, options->source);
  command.footer(
      "Examples:\n"
      "  mcstore summary\n"
      "  mcstore summary --stale 1d --warning drives.media_err_count=10\n"
      "  mcstore summary --from DIR");
  command.callback([options, &action] { action = [options] { return summarise(*options); }; });
}

}  // namespace mcstore
