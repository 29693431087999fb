#include "race/emulation.h"

namespace tests {

std::string no_threads() { return ""; }

}  // namespace tests
