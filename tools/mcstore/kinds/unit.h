// Numbers in the units that people read them in.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "shared/field.h"

namespace mcstore {

// Do people read such numbers in another form than as the number alone?
bool has_form(mcserver::Unit unit);

// "1.0 GiB", "2026-03-02 10:00:00 UTC", "8760 h (365 days)", "31 C", "42 %". A unit
// without a form is a number like any other.
std::string in_unit(uint64_t number, mcserver::Unit unit);

// "40 s", "12 min", "5 h", "3 days": how long that is, in the largest unit of which there are two.
std::string duration(int64_t seconds);

// "90", "90s", "15m", "6h", "2d" as seconds; nothing if the text is none of these.
std::optional<int64_t> parse_duration(const std::string &text);

// "2026-03-02T10:00:00Z", with nanoseconds if there are any. Empty for a time that has no year.
std::string iso_time(const struct timespec &time);

// The time that iso_time() has written so; nothing if the text is anything else.
std::optional<struct timespec> parse_iso_time(const std::string &text);

}  // namespace mcstore
