// Marker files: paths whose mere existence switches a service facility on. Each is looked up afresh at every use.
#pragma once

#include "shared/stream.h"

namespace mcserver {

// Does anything, even a directory, exist at this path?
bool marker_exists(const char *path);

// The file that a dump is appended to. Without the marker, or when it cannot be opened, there is none.
Stream open_dump(const char *marker, const char *path);

}  // namespace mcserver
