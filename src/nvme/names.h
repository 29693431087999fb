// The values of the NVMe name tables that the code itself knows.
#pragma once

#include <cstdint>

namespace mcserver::nvme {

inline constexpr uint8_t kMainPower = 4;  // of nvme_state_names: the one state in which an event compares records

// Of nvme_status_names.
inline constexpr uint8_t kOptimal = 1;
inline constexpr uint8_t kModerateFault = 3;
inline constexpr uint8_t kSevereFault = 4;
inline constexpr uint8_t kDeleted = 5;

}  // namespace mcserver::nvme
