// A host that reads one kind of device while a collector writes.
#pragma once

#include <cstdint>
#include <string>

#include "race/caller.h"
#include "race/collector.h"
#include "race/follower.h"
#include "race/kinds.h"

namespace tests {

class InventoryReader {
 public:
  InventoryReader(const Kind &kind, const host::Plugin &plugin, const StoreDirectory &files, const Collector &collector)
      : kind_(kind), caller_(plugin, files), collector_(collector), follower_(kind) {}

  // Calls, and expects the right answer, or that the waiting for the lock was interrupted.
  void call(Mode mode);

  // A race goes on at least until each reader has seen so much, however slow the machine is.
  bool has_seen_enough() const { return follower_.generations_seen() >= 10; }

  uint64_t refused() const { return refused_; }
  void print_figures(const std::string &race) const;

 private:
  const Kind &kind_;
  Caller caller_;
  const Collector &collector_;
  Follower follower_;
  uint64_t calls_ = 0;
  uint64_t refused_ = 0;
};

}  // namespace tests
