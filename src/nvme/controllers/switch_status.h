// Which controllers are PCIe switches, and how the health of a switch is shown.
#pragma once

#include <cstdint>
#include <cstring>

#include "mcserver_storage.h"
#include "records/nvme_controller_record.h"

namespace mcserver::nvme::controllers {

inline bool is_switch(const NvmeCtlrInfo &record) {
  constexpr const char *prefix = records::kIsSwitch.begins_with;
  return strncmp(record.controller_type, prefix, strlen(prefix)) == 0;
}

// A text that begins with "Optimal" is shown as it is. Any other is the description of a fault: a word takes its place,
// and the description follows.
struct SwitchStatus {
  const char *status;
  const char *description;  // null when there is no fault

  SwitchStatus(const char *text, uint8_t fault) : status(text), description(nullptr) {
    const char *optimal = nvme_status_names[MC_NVME_OPTIMAL];
    if (strncmp(text, optimal, strlen(optimal)) == 0) return;
    status = nvme_status_names[fault];
    description = text;
  }
};

}  // namespace mcserver::nvme::controllers
