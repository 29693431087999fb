// What the tests of every RAID kind name alike.
#pragma once

namespace tests {

// While there is such a file, the full call answers with a simulated inventory.
inline constexpr char kSimulationMarker[] = "/debug/mctool_storage_debug";

// The first list to be allocated is the cur list, the second one the cached list.
inline constexpr int kCur = 1;
inline constexpr int kCached = 2;

}  // namespace tests
