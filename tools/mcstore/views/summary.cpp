#include "mcstore/views/summary.h"

#include <fmt/core.h>

#include "mcstore/kinds/unit.h"
#include "mcstore/kinds/value.h"
#include "mcstore/views/colour.h"

namespace mcstore {
namespace {

constexpr size_t kMostShown = 12;  // the rest of the screen is for the kinds

std::string headline(const Survey &survey, const TableStyle &style) {
  const char *word = word_for(survey.health);
  const std::string health = style.has_colour ? coloured(word, survey.health) : word;
  if (survey.attention.empty() && survey.health != Health::kOk) return fmt::format("{}: there are no data\n", health);
  if (survey.attention.empty()) return fmt::format("{}: {} devices\n", health, survey.devices);
  const auto devices = static_cast<size_t>(
      std::ranges::count_if(survey.attention, [](const Attention &one) { return !one.device.empty(); }));
  std::string text =
      fmt::format("{}: {} of {} devices need{} attention", health, devices, survey.devices, devices == 1 ? "s" : "");
  if (survey.attention.size() > devices)
    text += fmt::format(", and {} of the data cannot be relied on", survey.attention.size() - devices);
  return text + '\n';
}

std::string attention_table(const Survey &survey, const TableStyle &style) {
  Table table(style);
  table.add_column("HEALTH", Table::Fit::kWhole);
  table.add_column("DEVICE", Table::Fit::kWhole);
  table.add_column("PLACE", Table::Fit::kCut);
  table.add_column("REASON", Table::Fit::kWrap);
  for (const Attention &one : survey.attention) {
    if (&one - survey.attention.data() == kMostShown) break;
    table.add_line({{.text = word_for(one.health), .colour = style.has_colour ? colour_of(one.health) : nullptr},
                    {.text = one.device.empty() ? std::string(one.kind->name) : one.device},
                    {.text = one.place},
                    {.text = joined(one.reasons, ", ")}});
  }
  std::string text = table.text();
  if (survey.attention.size() > kMostShown)
    text += fmt::format("... and {} more: mcstore get all --filter health=...\n", survey.attention.size() - kMostShown);
  return text;
}

std::string count_of(const KindSurvey &of_kind, Health health) {
  const auto count = of_kind.counts.find(health);
  return count == of_kind.counts.end() ? "-" : fmt::format("{}", count->second);
}

std::string temperatures(const KindSurvey &of_kind) {
  if (!of_kind.temperatures) return "-";
  const auto [least, greatest] = *of_kind.temperatures;
  return least == greatest ? fmt::format("{} C", least) : fmt::format("{}-{} C", least, greatest);
}

std::string kinds_table(const Survey &survey, const TableStyle &style) {
  Table table(style);
  table.add_column("KIND", Table::Fit::kWhole);
  for (const char *heading : {"DEVICES", "OK", "WARNING", "CRITICAL", "UNKNOWN", "CAPACITY", "TEMP", "AGE"})
    table.add_column(heading, Table::Fit::kRight);
  for (const KindSurvey &of_kind : survey.kinds) {
    if (of_kind.status == KindStatus::kAbsent) continue;
    table.add_line({{.text = std::string(of_kind.kind->name)},
                    {.text = of_kind.status == KindStatus::kFine ? fmt::format("{}", of_kind.devices)
                                                                 : fmt::format("{}!", of_kind.devices)},
                    {.text = count_of(of_kind, Health::kOk)},
                    {.text = count_of(of_kind, Health::kWarning)},
                    {.text = count_of(of_kind, Health::kCritical)},
                    {.text = count_of(of_kind, Health::kUnknown)},
                    {.text = of_kind.capacity > 0 ? in_unit(of_kind.capacity, mcserver::Unit::kBytes) : "-"},
                    {.text = temperatures(of_kind)},
                    {.text = of_kind.age ? duration(*of_kind.age) : "-"}});
  }
  return table.text();
}

std::string absent_kinds(const Survey &survey) {
  std::vector<std::string> names;
  for (const KindSurvey &of_kind : survey.kinds)
    if (of_kind.status == KindStatus::kAbsent) names.emplace_back(of_kind.kind->name);
  return names.empty() ? "" : fmt::format("\nNothing of: {}\n", joined(names, ", "));
}

}  // namespace

std::string summary(const Survey &survey, const TableStyle &style) {
  std::string text = headline(survey, style);
  if (!survey.attention.empty()) text += '\n' + attention_table(survey, style);
  const bool has_rows = std::ranges::any_of(
      survey.kinds, [](const KindSurvey &of_kind) { return of_kind.status != KindStatus::kAbsent; });
  if (has_rows) text += '\n' + kinds_table(survey, style);
  return text + absent_kinds(survey);
}

}  // namespace mcstore
