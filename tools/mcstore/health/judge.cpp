#include "mcstore/health/judge.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/kinds/unit.h"

namespace mcstore {
namespace {

struct Finding {
  Health health;
  std::string text;
};

std::string filled_in(std::string_view reason, const std::string &value) {
  const size_t braces = reason.find("{}");
  if (braces == reason.npos) return std::string(reason);
  return fmt::format("{}{}{}", reason.substr(0, braces), value.empty() ? "(empty)" : value, reason.substr(braces + 2));
}

Verdict verdict_from(std::vector<Finding> findings) {
  std::ranges::stable_sort(findings,
                           [](const Finding &one, const Finding &other) { return one.health > other.health; });
  Verdict verdict;
  if (!findings.empty()) verdict.health = findings.front().health;
  for (Finding &finding : findings)
    (finding.health == Health::kOk ? verdict.notes : verdict.reasons).push_back(std::move(finding.text));
  return verdict;
}

void judge_by_threshold(const Threshold &threshold, const Device &device, std::vector<Finding> &findings) {
  if (threshold.kind != &device.kind()) return;
  const Field *field = device.find(threshold.field);
  const std::optional<int64_t> number = field ? device.number(*field) : std::nullopt;
  if (number && threshold.range.alerts(static_cast<double>(*number)))
    findings.push_back({threshold.health, fmt::format("{} is {}, limit {}", threshold.field, device.text(*field),
                                                      threshold.range.text())});
}

}  // namespace

const char *word_for(Health health) {
  switch (health) {
    case Health::kOk:
      return "OK";
    case Health::kUnknown:
      return "UNKNOWN";
    case Health::kWarning:
      return "WARNING";
    case Health::kCritical:
      return "CRITICAL";
  }
  return "";
}

Judge::Judge(Standards standards) : standards_(std::move(standards)) {
  for (const Rule &rule : rules()) {
    const Kind &kind = kind_named(rule.kind);
    rules_[&kind].push_back({&rule, &kind.fields[mcserver::find_row(kind.fields, rule.field)]});
  }
}

Verdict Judge::judge(const Device &device) const {
  std::vector<Finding> findings;
  if (const auto of_kind = rules_.find(&device.kind()); of_kind != rules_.end())
    for (const auto &[rule, field] : of_kind->second)
      if (rule->condition.holds(device, *field))
        findings.push_back({rule->health, filled_in(rule->reason, device.text(*field))});
  for (const Threshold &threshold : standards_.thresholds) judge_by_threshold(threshold, device, findings);
  return verdict_from(std::move(findings));
}

Verdict Judge::judge_data(const KindInventory &inventory) const {
  std::vector<Finding> findings;
  const auto unknown = [&](std::string reason) { findings.push_back({Health::kUnknown, std::move(reason)}); };
  if (inventory.status != KindStatus::kFine && inventory.status != KindStatus::kAbsent) unknown(inventory.error);
  for (const StateRule &rule : state_rules())
    if (rule.kind == inventory.kind->name && inventory.state && *inventory.state != rule.good)
      unknown(fmt::format("the subsystem's state is {}", state_text(inventory)));
  const std::optional<int64_t> seconds = age(inventory);
  if (standards_.stale && seconds && *seconds > *standards_.stale)
    unknown(fmt::format("the data are {} old", duration(*seconds)));
  if (standards_.stale && seconds && -*seconds > *standards_.stale)
    unknown(fmt::format("the data are dated {} from now", duration(-*seconds)));
  return verdict_from(std::move(findings));
}

std::optional<int64_t> Judge::age(const KindInventory &inventory) const {
  if (!inventory.store) return {};
  return standards_.now - inventory.store->modified.tv_sec;
}

}  // namespace mcstore
