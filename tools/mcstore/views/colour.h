// Colour, which is never the only sign of anything.
#pragma once

#include <string>
#include <string_view>

#include "mcstore/health/health.h"

namespace mcstore {

enum class ColourChoice { kAuto, kAlways, kNever };

// Is it wanted? By itself only on terminals that have it, and where NO_COLOR is not set.
bool wants_colour(ColourChoice choice, bool is_terminal);

// The escape sequence that begins the colour.
const char *colour_of(Health health);

// The text in the health's colour.
std::string coloured(std::string_view text, Health health);

}  // namespace mcstore
