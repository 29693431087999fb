// The lock of the RAID kinds. Controllers read the lock file itself; every other kind reads its own file under it.
#pragma once

#include "shared/store_lock.h"

namespace mcserver::raid {

extern const LockProfile kStorageLock;

}  // namespace mcserver::raid
