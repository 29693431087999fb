#include "mcstore/kinds/unit.h"

#include <fmt/core.h>

#include <charconv>
#include <ctime>
#include <iterator>
#include <string_view>

namespace mcstore {
namespace {

using mcserver::Unit;

std::string bytes(uint64_t number) {
  constexpr const char *kUnits[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
  if (number < 1024) return fmt::format("{} B", number);
  double scaled = static_cast<double>(number) / 1024;
  size_t unit = 0;
  for (; scaled >= 1023.95 && unit + 1 < std::size(kUnits); ++unit) scaled /= 1024;  // never shown as 1024.0
  return fmt::format("{:.1f} {}", scaled, kUnits[unit]);
}

std::string hours(uint64_t number) {
  constexpr uint64_t kHoursOfTwoDays = 48;
  if (number < kHoursOfTwoDays) return fmt::format("{} h", number);
  return fmt::format("{} h ({} days)", number, number / 24);
}

std::string time_stamp(uint64_t number) {
  if (number > UINT32_MAX) return fmt::format("{}", static_cast<int64_t>(number));  // no second that has come yet
  const auto time = static_cast<time_t>(number);
  struct tm fields = {};
  char text[32] = "";
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", gmtime_r(&time, &fields));
  return text;
}

constexpr int64_t kMinute = 60;
constexpr int64_t kHour = 60 * kMinute;
constexpr int64_t kDay = 24 * kHour;

}  // namespace

std::optional<int64_t> parse_duration(const std::string &text) {
  int64_t number = 0;
  const char *const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  constexpr int64_t kLongest = 100 * 365 * kDay;  // a century: no product of it overflows
  if (result.ec != std::errc() || number < 0 || number > kLongest) return {};
  const std::string_view unit(result.ptr, end);
  if (unit.empty() || unit == "s") return number;
  if (unit == "m") return number * kMinute;
  if (unit == "h") return number * kHour;
  return unit == "d" ? std::optional(number * kDay) : std::nullopt;
}

bool has_form(Unit unit) { return unit != Unit::kNone; }

std::string in_unit(uint64_t number, Unit unit) {
  switch (unit) {
    case Unit::kBytes:
      return bytes(number);
    case Unit::kSeconds:
      return fmt::format("{} s", number);
    case Unit::kHours:
      return hours(number);
    case Unit::kDays:
      return fmt::format("{} days", number);
    case Unit::kPercent:
      return fmt::format("{} %", static_cast<int64_t>(number));
    case Unit::kCelsius:
      return fmt::format("{} C", number);
    case Unit::kTimeStamp:
      return time_stamp(number);
    default:
      return fmt::format("{}", number);
  }
}

std::string duration(int64_t seconds) {
  if (seconds < 0) return '-' + duration(-seconds);
  if (seconds >= 2 * kDay) return fmt::format("{} days", seconds / kDay);
  if (seconds >= 2 * kHour) return fmt::format("{} h", seconds / kHour);
  if (seconds >= 2 * kMinute) return fmt::format("{} min", seconds / kMinute);
  return fmt::format("{} s", seconds);
}

std::string iso_time(const struct timespec &time) {
  struct tm fields = {};
  if (!gmtime_r(&time.tv_sec, &fields)) return "";
  char text[40] = "";
  strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &fields);
  return time.tv_nsec == 0 ? fmt::format("{}Z", text) : fmt::format("{}.{:09}Z", text, time.tv_nsec);
}

std::optional<struct timespec> parse_iso_time(const std::string &text) {
  struct tm fields = {};
  const char *rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &fields);
  if (!rest) return {};
  struct timespec time = {.tv_sec = timegm(&fields), .tv_nsec = 0};
  if (*rest == '.') std::from_chars(rest + 1, text.data() + text.size(), time.tv_nsec);
  if (iso_time(time) != text) return {};
  return time;
}

}  // namespace mcstore
