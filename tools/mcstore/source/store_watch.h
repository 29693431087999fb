// Wakes a reader up when store files are written.
#pragma once

#include <chrono>
#include <functional>
#include <set>
#include <string>

#include "mcstore/source/descriptor.h"
#include "mcstore/source/place.h"

namespace mcstore {

enum class Woken {
  kByWrite,
  kByTime,
  kByHangup,  // nobody reads standard output any more
};

class StoreWatch {
 public:
  using Clock = std::chrono::steady_clock;

  // Where the system cannot tell of writes, time alone wakes.
  explicit StoreWatch(const Place &place);

  // Finds the directories of the store files, which may have come or been replaced since. Writes count from here on, so
  // this comes before reading.
  void renew();

  // Waits for a write, until the time at most. A burst of writes wakes once, a moment after it.
  Woken wait_until(Clock::time_point time);

 private:
  void settle();
  bool take_events();

  Descriptor events_;
  std::set<std::string> directories_ = {};
  std::set<std::string, std::less<>> names_ = {};  // of the store files
};

}  // namespace mcstore
