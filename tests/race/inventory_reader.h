// A host that reads one kind of device while a collector writes, and knows what each answer must be.
#pragma once

#include <chrono>
#include <cstdint>

#include "race/caller.h"
#include "race/chosen_time.h"
#include "race/collector.h"
#include "race/kinds.h"

namespace tests {

enum class Mode { kFull, kDelta };

class InventoryReader {
 public:
  InventoryReader(const Kind &kind, const host::Plugin &plugin, const StoreDirectory &files, const Collector &collector)
      : kind_(kind), caller_(plugin, files), collector_(collector) {}

  // Calls, and expects the answer to be one whole generation, or the difference to the one seen before. What is left is
  // that the waiting for the lock was interrupted.
  void call(Mode mode);

  uint64_t generations_seen() const { return generations_seen_; }
  uint64_t refused() const { return refused_; }
  void print_figures(const std::string &race) const;

 private:
  void expect_whole(Mode mode, const Answer &answer, uint32_t earliest, uint32_t latest);

  const Kind &kind_;
  Caller caller_;
  const Collector &collector_;
  Generation seen_ = {};
  uint64_t calls_ = 0;
  uint64_t refused_ = 0;
  uint64_t generations_seen_ = 0;
};

}  // namespace tests
