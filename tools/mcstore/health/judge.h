// Judges devices and kinds by the rules, and by thresholds of the user's own.
#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/health/health.h"
#include "mcstore/health/rules.h"
#include "mcstore/health/threshold.h"
#include "mcstore/inventory/inventory.h"

namespace mcstore {

struct Standards {
  std::optional<int64_t> stale = {};  // seconds; data that are older are not believed
  time_t now = 0;                     // what their age is counted from
  std::vector<Threshold> thresholds = {};
};

// How a kind is: the worst of its devices, and what is to be said of the kind itself.
struct KindVerdict {
  Health health = Health::kOk;
  std::vector<std::string> reasons = {};  // of the kind itself, not of its devices
  std::map<Health, size_t> counts = {};   // of its devices
};

class Judge {
 public:
  explicit Judge(Standards standards);

  Verdict judge(const Device &device) const;

  // What is wrong with the kind itself, whatever its devices say.
  Verdict judge_data(const KindInventory &inventory) const;

  KindVerdict judge(const KindInventory &inventory) const;

 private:
  // Looked up once: there may be many devices.
  struct RuleOfKind {
    const Rule *rule;
    const Field *field;
  };

  Standards standards_;
  std::map<const Kind *, std::vector<RuleOfKind>> rules_;
};

}  // namespace mcstore
