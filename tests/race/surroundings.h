// What cannot be tried where this process lives: an emulator does not do everything, and sanitizers need more than
// others.
#pragma once

#include <string>

namespace tests {

// Why threads are not to be had here; empty where they are. Tried once, not guessed, in a process of its own: an
// emulator may not survive it.
std::string no_threads();

// Why a handler may not run as soon as its signal arrives; empty where it does.
std::string no_prompt_signals();

// Why no limit on the memory of this process can be tried; empty where it can.
std::string no_limit_on_memory();

}  // namespace tests
