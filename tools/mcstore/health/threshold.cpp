#include "mcstore/health/threshold.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

namespace mcstore {
namespace {

constexpr double kEndless = std::numeric_limits<double>::infinity();

std::optional<double> parse_number(std::string_view text) {
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool is_whole = result.ec == std::errc() && result.ptr == text.data() + text.size();
  return is_whole ? std::optional(number) : std::nullopt;
}

std::optional<double> parse_least(std::string_view text) {
  if (text == "~") return -kEndless;
  return parse_number(text);
}

std::optional<double> parse_greatest(std::string_view text) {
  if (text.empty()) return kEndless;
  return parse_number(text);
}

bool has_number(std::span<const Field> fields, std::string_view name) {
  const size_t row = mcserver::find_row(fields, name);
  return row < fields.size() && is_numeric(fields[row]);
}

}  // namespace

std::optional<Range> Range::parse(std::string_view text) {
  Range range;
  range.text_ = text;
  range.is_inside_ = text.starts_with('@');
  if (range.is_inside_) text.remove_prefix(1);
  const size_t colon = text.find(':');
  const auto least = colon == text.npos ? 0.0 : parse_least(text.substr(0, colon));
  const auto greatest = colon == text.npos ? parse_number(text) : parse_greatest(text.substr(colon + 1));
  if (!least || !greatest || !(*least <= *greatest)) return {};
  range.least_ = *least;
  range.greatest_ = *greatest;
  return range;
}

bool Range::alerts(double number) const { return (number >= least_ && number <= greatest_) == is_inside_; }

Threshold Threshold::parse(const std::string &text, Health health) {
  const size_t dot = text.find('.');
  const size_t equals = text.find('=', dot == text.npos ? 0 : dot);
  if (dot == text.npos || equals == text.npos)
    throw std::invalid_argument(fmt::format("'{}' is not of the form KIND.FIELD=RANGE", text));

  const std::string kind_name = text.substr(0, dot);
  const Kind *kind = find_kind(kind_name);
  if (!kind) throw std::invalid_argument(fmt::format("'{}' is not a kind of device", kind_name));
  std::string field = text.substr(dot + 1, equals - dot - 1);
  if (!has_number(kind->fields, field) && !(kind->variant && has_number(kind->variant->fields, field)))
    throw std::invalid_argument(fmt::format("{} have no numeric field '{}'", kind->name, field));
  const std::optional<Range> range = Range::parse(std::string_view(text).substr(equals + 1));
  if (!range)
    throw std::invalid_argument(
        fmt::format("'{}' is not a range such as 10, 5:10, ~:10 or @5:10", text.substr(equals + 1)));
  return {.kind = kind, .field = std::move(field), .range = *range, .health = health};
}

}  // namespace mcstore
