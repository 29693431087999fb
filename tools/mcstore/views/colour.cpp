#include "mcstore/views/colour.h"

#include <cstdlib>

namespace mcstore {
namespace {

std::string_view environment(const char *name) {
  const char *value = getenv(name);
  return value ? value : "";
}

}  // namespace

bool wants_colour(ColourChoice choice, bool is_terminal) {
  if (choice != ColourChoice::kAuto) return choice == ColourChoice::kAlways;
  return is_terminal && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

const char *colour_of(Health health) {
  switch (health) {
    case Health::kCritical:
      return "\033[1;31m";
    case Health::kWarning:
      return "\033[33m";
    case Health::kUnknown:
      return "\033[36m";
    case Health::kOk:
      return "\033[32m";
  }
  return "";
}

std::string coloured(std::string_view text, Health health) {
  return std::string(colour_of(health)).append(text).append("\033[0m");
}

}  // namespace mcstore
