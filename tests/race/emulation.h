// What an emulator may not be able to do. It is tried, not guessed, in a process of its own: it may end that.
#pragma once

#include <string>

namespace tests {

// Why threads are not to be had in this process; empty where they are.
std::string no_threads();

}  // namespace tests
