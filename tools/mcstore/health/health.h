// How a device is, and why.
#pragma once

#include <string>
#include <vector>

namespace mcstore {

// From good to bad, so that the worst of several is the greatest.
enum class Health { kOk, kUnknown, kWarning, kCritical };

inline constexpr Health kFromWorst[] = {Health::kCritical, Health::kWarning, Health::kUnknown, Health::kOk};

// "OK", "WARNING", "CRITICAL" or "UNKNOWN".
const char *word_for(Health health);

struct Verdict {
  Health health = Health::kOk;
  std::vector<std::string> reasons = {};  // why it is not OK, the worst ones first; not yet printable
  std::vector<std::string> notes = {};    // what else is worth knowing, likewise
};

}  // namespace mcstore
