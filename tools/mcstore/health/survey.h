// How everything is: what needs attention, and a few figures for each kind.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/health/health.h"
#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"

namespace mcstore {

struct Temperatures {
  int64_t least;
  int64_t greatest;
};

struct KindSurvey {
  const Kind *kind;
  KindStatus status;
  Health health = Health::kOk;           // the worst of the kind's data and devices
  std::map<Health, size_t> counts = {};  // of its devices
  size_t devices = 0;
  uint64_t capacity = 0;  // bytes
  std::optional<Temperatures> temperatures = {};
  std::optional<int64_t> age = {};  // seconds
};

// A device that is not OK; or, without a device, a kind that cannot be judged.
struct Attention {
  Health health;
  const Kind *kind;
  std::string device = {};  // these three are not yet printable
  std::string place = {};
  std::vector<std::string> reasons;
};

struct Survey {
  Health health = Health::kOk;
  std::vector<KindSurvey> kinds = {};
  std::vector<Attention> attention = {};  // the worst first
  size_t devices = 0;
};

class Surveyor {
 public:
  // The devices that these words mean are passed over.
  Surveyor(const Judge &judge, std::vector<std::string> ignored);

  void add(const KindInventory &inventory);

  // A kind that must be there, and has no data.
  void miss(const Kind &kind);

  // Everything that was added. Without any data nothing is known.
  Survey finish() &&;

 private:
  void add_device(const Device &device, KindSurvey &of_kind);

  const Judge &judge_;
  std::vector<std::string> ignored_;
  Survey survey_;
};

}  // namespace mcstore
