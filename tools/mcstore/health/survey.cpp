#include "mcstore/health/survey.h"

#include <utility>

namespace mcstore {
namespace {

std::optional<int64_t> number(const Device &device, std::string_view name) {
  const Field *field = device.find(name);
  return field ? device.number(*field) : std::nullopt;
}

void include(std::optional<Temperatures> &range, int64_t degrees) {
  if (!range) range = {.least = degrees, .greatest = degrees};
  range->least = std::min(range->least, degrees);
  range->greatest = std::max(range->greatest, degrees);
}

// By a word for the device, or by the kind and the name, as they are shown together.
bool is_meant(const Device &device, const std::string &word) {
  return device.is_called(word) || word == std::string(device.kind().name) + ' ' + device.name();
}

}  // namespace

Surveyor::Surveyor(const Judge &judge, std::vector<std::string> ignored)
    : judge_(judge), ignored_(std::move(ignored)) {}

void Surveyor::add(const KindInventory &inventory) {
  Verdict data = judge_.judge_data(inventory);
  KindSurvey of_kind = {.kind = inventory.kind, .status = inventory.status, .health = data.health};
  of_kind.age = judge_.age(inventory);
  if (data.health != Health::kOk)
    survey_.attention.push_back({.health = data.health, .kind = inventory.kind, .reasons = std::move(data.reasons)});
  for (size_t i = 0; i < inventory.size(); ++i) add_device(inventory.device(i), of_kind);
  survey_.devices += of_kind.devices;
  survey_.health = std::max(survey_.health, of_kind.health);
  survey_.kinds.push_back(std::move(of_kind));
}

void Surveyor::add_device(const Device &device, KindSurvey &of_kind) {
  const bool is_ignored =
      std::ranges::any_of(ignored_, [&](const std::string &word) { return is_meant(device, word); });
  if (is_ignored) return;
  Verdict verdict = judge_.judge(device);
  ++of_kind.devices;
  ++of_kind.counts[verdict.health];
  of_kind.health = std::max(of_kind.health, verdict.health);
  if (const auto bytes = number(device, device.kind().capacity)) of_kind.capacity += static_cast<uint64_t>(*bytes);
  if (const auto degrees = number(device, device.kind().temperature)) include(of_kind.temperatures, *degrees);
  if (verdict.health == Health::kOk) return;
  survey_.attention.push_back({.health = verdict.health,
                               .kind = &device.kind(),
                               .device = device.name(),
                               .place = device.place(),
                               .reasons = std::move(verdict.reasons)});
}

void Surveyor::miss(const Kind &kind) {
  survey_.health = std::max(survey_.health, Health::kUnknown);
  survey_.attention.push_back({.health = Health::kUnknown, .kind = &kind, .reasons = {"there are no data"}});
}

Survey Surveyor::finish() && {
  const auto has_data = [](const KindSurvey &of_kind) {
    return of_kind.status != KindStatus::kAbsent && of_kind.status != KindStatus::kUnreadable;
  };
  if (std::ranges::none_of(survey_.kinds, has_data)) survey_.health = std::max(survey_.health, Health::kUnknown);
  std::ranges::stable_sort(survey_.attention,
                           [](const Attention &one, const Attention &other) { return one.health > other.health; });
  return std::move(survey_);
}

}  // namespace mcstore
