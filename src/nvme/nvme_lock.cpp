#include "nvme/nvme_lock.h"

#include "records/kind_facts.h"
#include "shared/trace.h"

namespace mcserver::nvme {

// Without newlines, unlike the RAID family's.
constexpr LockProfile kNvmeLock = {
    .path = records::kNvmeLockPath,
    .open_failed = {211, TRACE_PREFIX "%s Open failed: %s"},
    .no_descriptor = {216, TRACE_PREFIX "Failed to get fd for %s: %s"},
    .lock_failed = {221, TRACE_PREFIX "Failed to lock File %s: %s"},
    .data_open_failed = {248, TRACE_PREFIX "%s Open failed: %s"},
    .unlock_failed = {187, TRACE_PREFIX "Failed to UnLock File %s: %s"},
};

}  // namespace mcserver::nvme
