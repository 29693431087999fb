// What must hold whatever the input is.
#pragma once

#include <cstdlib>

namespace fuzz {

// Without it the input is a finding. Not inlined, so that its trace tells which line that was.
[[gnu::noinline]] inline void require(bool is_so) {
  if (!is_so) abort();
}

}  // namespace fuzz
