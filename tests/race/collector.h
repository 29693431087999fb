// Collectors that rewrite store files while they are read: one that keeps to the lock, and one that does not.
#pragma once

#include <atomic>
#include <cstdint>
#include <random>
#include <span>
#include <thread>

#include "host/store_directory.h"
#include "race/kinds.h"

namespace tests {

// Writes the store files of a family in place, generation after generation, in many small writes that leave them torn
// all the while, and holds the family's lock exclusively as long as they are.
class Collector {
 public:
  // Generation 1 is there when this returns.
  Collector(const StoreDirectory &files, std::span<const Kind> family, unsigned seed);
  Collector(const Collector &) = delete;
  Collector &operator=(const Collector &) = delete;
  ~Collector();  // stops it

  // The last one that was begun, and the last one that is finished.
  uint32_t begun() const { return begun_; }
  uint32_t finished() const { return finished_; }

  void stop();

 private:
  void write_next();
  void write_torn(int fd, const Bytes &content);
  void run();

  const StoreDirectory &files_;
  std::span<const Kind> family_;
  std::minstd_rand random_;
  std::atomic<uint32_t> begun_ = 0;
  std::atomic<uint32_t> finished_ = 0;
  std::atomic<bool> is_stopped_ = false;
  std::thread thread_;
};

// Truncates, extends and damages a kind's store file, and never asks for a lock.
class LawlessCollector {
 public:
  LawlessCollector(const StoreDirectory &files, const Kind &kind, unsigned seed);
  LawlessCollector(const LawlessCollector &) = delete;
  LawlessCollector &operator=(const LawlessCollector &) = delete;
  ~LawlessCollector();

  uint64_t changes() const { return changes_; }

  // Of a file. No kind has 256 records in it, at which some counts begin anew.
  static constexpr size_t kMostBytes = 40'000;

 private:
  void change_something();

  std::minstd_rand random_;
  const Kind &kind_;
  int fd_;
  std::atomic<uint32_t> changes_ = 0;
  std::atomic<bool> is_stopped_ = false;
  std::thread thread_;
};

}  // namespace tests
