// Follows what a host was told of a kind, and knows what the next answer must be.
#pragma once

#include <cstdint>

#include "race/caller.h"
#include "race/kinds.h"

namespace tests {

enum class Mode { kFull, kDelta };
inline constexpr Mode kModes[] = {Mode::kFull, Mode::kDelta};

inline const char *entry_point(const Kind &kind, Mode mode) { return mode == Mode::kFull ? kind.full : kind.delta; }

class Follower {
 public:
  explicit Follower(const Kind &kind) : kind_(kind) {}

  // Expects a successful call's answer to be one whole generation, or the difference to the one seen before. While the
  // call lasted, the file held generations from `earliest` to `latest`.
  void follow(Mode mode, const Answer &answer, uint32_t earliest, uint32_t latest);
  void follow(Mode mode, const Answer &answer, uint32_t generation) { follow(mode, answer, generation, generation); }

  uint64_t generations_seen() const { return generations_seen_; }

 private:
  const Kind &kind_;
  Generation seen_ = {};
  uint64_t generations_seen_ = 0;
};

}  // namespace tests
