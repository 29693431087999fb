#include "model/choices.h"

#include <algorithm>

namespace model {

uint32_t Choices::below(uint32_t limit) {
  if (is_random_) return made_.emplace_back(static_cast<uint32_t>(random_() % limit));
  return next_ < made_.size() ? made_[next_++] % limit : 0;
}

Bytes Choices::bytes(size_t count) {
  std::vector<uint8_t> bytes(count);
  const uint32_t seed = below(1000);
  std::minstd_rand random(seed);
  if (seed != 0)
    for (uint8_t &byte : bytes) byte = random() >> 8 & 0xFF;
  return Bytes(std::move(bytes));
}

namespace {

using Decisions = std::vector<uint32_t>;

constexpr size_t kShort = 48;

class Shrinker {
 public:
  Shrinker(Decisions choices, const std::function<bool(const Decisions &)> &still_fails)
      : best_(std::move(choices)), still_fails_(still_fails) {}

  Decisions shortest() {
    do {
      // Quickly at first; then what belongs together, which has any length, mostly a short one.
      do {
        has_improved_ = false;
        for (size_t length = best_.size(); length > 0; length /= 2) leave_out_runs_of(length);
      } while (has_improved_);
      for (size_t length = std::min(best_.size(), kShort); length > 0; --length) leave_out_runs_of(length);
      for (size_t i = 0; i < best_.size(); ++i) lower(i);
    } while (has_improved_);
    return best_;
  }

 private:
  void leave_out_runs_of(size_t length) {
    for (size_t begin = 0; begin + length <= best_.size();) {
      Decisions shorter = best_;
      const auto first = shorter.begin() + static_cast<Decisions::difference_type>(begin);
      shorter.erase(first, first + static_cast<Decisions::difference_type>(length));
      if (!take_if_it_fails(std::move(shorter))) begin += length;
    }
  }

  // Halves what is taken away until nothing more can be.
  void lower(size_t i) {
    for (uint32_t step = best_[i]; step > 0;) {
      Decisions lower = best_;
      lower[i] -= step;
      step = take_if_it_fails(std::move(lower)) ? std::min(step, best_[i]) : step / 2;
    }
  }

  bool take_if_it_fails(Decisions candidate) {
    if (!still_fails_(candidate)) return false;
    best_ = std::move(candidate);
    return has_improved_ = true;
  }

  Decisions best_;
  const std::function<bool(const Decisions &)> &still_fails_;
  bool has_improved_ = false;
};

}  // namespace

std::vector<uint32_t> shrunk(std::vector<uint32_t> choices,
                             const std::function<bool(const std::vector<uint32_t> &)> &still_fails) {
  return Shrinker(std::move(choices), still_fails).shortest();
}

}  // namespace model
