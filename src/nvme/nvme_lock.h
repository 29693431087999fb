// The lock of the NVMe kinds. Controllers read the lock file itself; drives read their own file under it.
#pragma once

#include "shared/store_lock.h"

namespace mcserver::nvme {

extern const LockProfile kNvmeLock;

}  // namespace mcserver::nvme
