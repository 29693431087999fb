// Judges devices, and what a source says of a kind, by the rules, and by thresholds of the user's own.
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

class Judge {
 public:
  explicit Judge(Standards standards);

  Verdict judge(const Device &device) const;

  // What is wrong with the data themselves, whatever the devices say.
  Verdict judge_data(const KindInventory &inventory) const;

  // How old the data are, in seconds; nothing where no file tells.
  std::optional<int64_t> age(const KindInventory &inventory) const;

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
