// What cannot be tried in a process that is emulated.
#pragma once

#include <string>

namespace tests {

// Why threads are not to be had here; empty where they are.
std::string no_threads();

}  // namespace tests
