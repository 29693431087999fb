// Numbers of a table in the narrow types in which the plug-in keeps them.
#pragma once

#include <cstddef>
#include <limits>

namespace mcserver {

void number_is_too_large_for_its_place();  // not constant, so that reaching it does not compile

template <typename Narrow>
consteval Narrow narrowed(size_t number) {
  if (number > std::numeric_limits<Narrow>::max()) number_is_too_large_for_its_place();
  return static_cast<Narrow>(number);
}

}  // namespace mcserver
