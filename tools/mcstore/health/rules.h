// The rules by which devices are judged: all of them stand in one table, which docs/health.md shows.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "mcstore/health/health.h"
#include "mcstore/kinds/device.h"

namespace mcstore {

// What is asked of a field. A field that means nothing in a record fulfils none of them.
class Condition {
 public:
  static constexpr Condition is(int64_t value) { return between(value, value); }
  static constexpr Condition between(int64_t least, int64_t greatest) { return {Test::kBetween, least, greatest}; }
  static constexpr Condition not_between(int64_t least, int64_t greatest) { return {Test::kOutside, least, greatest}; }
  static constexpr Condition at_least(int64_t least) { return {Test::kBetween, least, INT64_MAX}; }
  static constexpr Condition at_least_field(std::string_view field) { return {Test::kAtLeastField, 0, 0, field}; }
  static constexpr Condition is_text() { return {Test::kText, 0, 0}; }  // any but an empty one
  static constexpr Condition not_beginning_with(std::string_view text) { return {Test::kNotBeginning, 0, 0, text}; }

  bool holds(const Device &device, const Field &field) const;

  // In words, as they follow the field's name: "is 1", "is at least `throttle_threshold`".
  std::string in_words() const;

 private:
  enum class Test { kBetween, kOutside, kAtLeastField, kText, kNotBeginning };

  constexpr Condition(Test test, int64_t least, int64_t greatest, std::string_view operand = {})
      : test_(test), least_(least), greatest_(greatest), operand_(operand) {}

  Test test_;
  int64_t least_;
  int64_t greatest_;
  std::string_view operand_;
};

inline constexpr Condition kIsTrue = Condition::not_between(0, 0);
inline constexpr Condition kIsFalse = Condition::is(0);

struct Rule {
  std::string_view kind;
  std::string_view field;
  Condition condition;
  Health health;            // OK for a note
  std::string_view reason;  // {} stands for the field's value
};

std::span<const Rule> rules();

// The one state of the subsystem in which a kind's data are to be believed.
struct StateRule {
  std::string_view kind;
  uint64_t good;
};

std::span<const StateRule> state_rules();

}  // namespace mcstore
