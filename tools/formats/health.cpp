// Prints docs/health.md: the rules by which mcstore judges.

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <string>

#include "mcstore/health/rules.h"
#include "mcstore/kinds/kind.h"

namespace {

using mcstore::Health;
using mcstore::Kind;
using mcstore::Rule;

constexpr const char *kIntroduction =
    R"(<!-- Generated from tools/mcstore/health/rules.cpp by script/docs. Change that, not this file. -->

# Health

`mcstore` calls each device OK, WARNING, CRITICAL or UNKNOWN, by these rules and no others; `--warning` and `--critical`
add limits of one's own on any number. A device is what the worst of its rules says, a kind is what the worst of its
devices is, and all of them together are what the worst kind is; CRITICAL is worse than WARNING, that is worse than
UNKNOWN, and that is worse than OK. Unknown is never OK.

A rule does not hold where its field means nothing: where the value is the one for none, or another field says so, as
`temp_valid` does of a drive's temperature. What nobody has defined is not guessed: `status`, `state` and
`extended_status` of a drive are shown and never judged. A note tells what is worth knowing, and changes nothing.

A kind whose store file cannot be read or is damaged, or whose devices are simulated, is UNKNOWN, as is one whose data are
older than `--stale` allows. If no kind has data, everything is UNKNOWN.
)";

std::string state_of(const Kind &kind, uint64_t state) {
  for (const mcserver::Word &word : kind.stored_state->meaning.words)
    if (word.value == state) return fmt::format("{} ({})", state, word.text);
  return fmt::format("{}", state);
}

std::string row(const Rule &rule) {
  const char *health = rule.health == Health::kOk ? "note" : word_for(rule.health);
  const size_t braces = rule.reason.find("{}");
  std::string reason(rule.reason);
  if (braces != reason.npos) reason.replace(braces, 2, "*value*");
  return fmt::format("| `{}` | {} | {} | {} |\n", rule.field, rule.condition.in_words(), health, reason);
}

std::string section(const Kind &kind) {
  std::string rows;
  for (const Rule &rule : mcstore::rules())
    if (rule.kind == kind.name) rows += row(rule);
  if (rows.empty()) return "";

  std::string text = fmt::format("\n## {}\n\n", kind.title);
  for (const mcstore::StateRule &rule : mcstore::state_rules())
    if (rule.kind == kind.name)
      text += fmt::format("UNKNOWN when the subsystem's state is another than {}.\n\n", state_of(kind, rule.good));
  return text + "| Field | Holds when it | Health | In words |\n|---|---|---|---|\n" + rows;
}

std::string document() {
  std::string text = kIntroduction;
  for (const Kind &kind : mcstore::kinds()) text += section(kind);
  return text;
}

}  // namespace

int main() {
  try {
    fputs(document().c_str(), stdout);
    return fflush(stdout) == 0 ? 0 : 1;
  } catch (const std::exception &error) {
    fprintf(stderr, "health_rules: %s\n", error.what());
    return 1;
  }
}
