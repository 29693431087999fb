// In which ways each libc function of the plug-in may fail.
#pragma once

#include <string>
#include <vector>

#include "host/libc_stand_ins.h"

namespace tests {

// What becomes of a call to this function.
struct Failure {
  std::string function;
  host::Verdict verdict;
};

// How much is swept: everyday, what the plug-in can tell from each other; all with MCS_SWEEP=all in the environment;
// one in five of the everyday ones with MCS_SWEEP=few, where machines are slow; and with MCS_SWEEP=count, all is
// counted and nothing disturbed.
enum class Amount { kEveryday, kFew, kAll, kCount };
Amount amount();
bool is_everything_swept();  // or counted

// Everything that may become of a call to the function, beside a plain success, as far as the amount goes. Throws
// std::out_of_range for a function that nobody has described yet.
const std::vector<host::Verdict> &failures_of(const std::string &function);

// Does the function only write what has been decided?
bool only_writes(const std::string &function);

// "fread fails with EIO"
std::string to_string(const Failure &failure);

}  // namespace tests
