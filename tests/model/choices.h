// The decisions that make up a history: random ones, which are remembered, or given ones, played again.
//
// Whatever is made from choices can be made again from them, and made simpler by simpler ones: a smaller choice is
// the simpler one, and what comes after the end of given choices is 0. That is how a long history is cut down to a
// short one without knowing anything about histories.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <random>
#include <vector>

#include "host/bytes.h"

namespace model {

using tests::Bytes;

class Choices {
 public:
  explicit Choices(uint64_t seed) : random_(seed), is_random_(true) {}
  explicit Choices(std::vector<uint32_t> given) : made_(std::move(given)) {}

  // A number below the limit.
  uint32_t below(uint32_t limit);

  // False most of the time.
  bool one_in(uint32_t times) { return below(times) == times - 1; }

  // The first option is the simplest.
  template <typename Option>
  Option one_of(std::initializer_list<Option> options) {
    return options.begin()[below(static_cast<uint32_t>(options.size()))];
  }

  // Zeros, or any bytes: one choice makes all of them.
  Bytes bytes(size_t count);

  // All that was chosen.
  const std::vector<uint32_t> &made() const { return made_; }

 private:
  std::mt19937_64 random_;
  bool is_random_ = false;
  std::vector<uint32_t> made_;
  size_t next_ = 0;
};

// The shortest and smallest choices that can be found which still fail.
std::vector<uint32_t> shrunk(std::vector<uint32_t> choices,
                             const std::function<bool(const std::vector<uint32_t> &)> &still_fails);

}  // namespace model
