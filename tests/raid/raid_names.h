// What the tests of every RAID kind name alike.
#pragma once

namespace tests {

// While there is such a file, the full call answers with a simulated inventory.
inline constexpr char kSimulationMarker[] = "/debug/mctool_storage_debug";

}  // namespace tests
