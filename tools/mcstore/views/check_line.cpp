#include "mcstore/views/check_line.h"

#include <fmt/core.h>

#include "mcstore/kinds/printable.h"

namespace mcstore {
namespace {

// A bar would begin the figures.
std::string shown(const std::string &text) {
  std::string result;
  for (const char c : printable(text)) (c == '|') ? result += "\\x7c" : result += c;
  return result;
}

std::string subject(const Attention &one) {
  return one.device.empty() ? std::string(one.kind->name) : fmt::format("{} {}", one.kind->name, one.device);
}

std::string described(const Attention &one) {
  return shown(fmt::format("{}: {}", subject(one), joined(one.reasons, ", ")));
}

std::string headline(const Survey &survey) {
  if (survey.health == Health::kOk) return fmt::format("{} devices", survey.devices);
  if (survey.attention.empty()) return "there are no data";
  const size_t others = survey.attention.size() - 1;
  return described(survey.attention.front()) + (others > 0 ? fmt::format(" (and {} more)", others) : "");
}

// Names without blanks or quotes, so that no figure needs them.
std::string figures(const KindSurvey &of_kind) {
  std::string text = fmt::format(" {}={}", of_kind.kind->name, of_kind.devices);
  for (const Health health : kFromWorst) {
    if (health == Health::kOk) continue;
    const auto count = of_kind.counts.find(health);
    std::string name = word_for(health);
    for (char &c : name) c = static_cast<char>(c | 0x20);  // in small letters
    text += fmt::format(" {}.{}={}", of_kind.kind->name, name, count == of_kind.counts.end() ? 0 : count->second);
  }
  if (of_kind.temperatures)
    text += fmt::format(" {}.temperature={}", of_kind.kind->name, of_kind.temperatures->greatest);
  if (of_kind.age) text += fmt::format(" {}.age={}s", of_kind.kind->name, *of_kind.age);
  return text;
}

}  // namespace

std::string check_output(const Survey &survey) {
  std::string text = fmt::format("STORAGE {} - {}", word_for(survey.health), headline(survey));
  std::string all;
  for (const KindSurvey &of_kind : survey.kinds)
    if (of_kind.status != KindStatus::kAbsent && of_kind.status != KindStatus::kUnreadable) all += figures(of_kind);
  if (!all.empty()) text += " |" + all;
  text += '\n';
  for (const Attention &one : survey.attention) text += fmt::format("{} {}\n", word_for(one.health), described(one));
  return text;
}

std::string check_failure(const std::string &problem) { return fmt::format("STORAGE UNKNOWN - {}\n", shown(problem)); }

}  // namespace mcstore
