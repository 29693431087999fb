// What the plug-in reads, as it is at one moment.
#pragma once

#include <string>
#include <vector>

#include "mcstore/source/place.h"
#include "mcstore/source/store_lock.h"
#include "mcstore/source/whole_file.h"

namespace mcstore {

struct CopiedFile {
  std::string path;  // as the plug-in knows it
  WholeFile content;
};

// Store files that share a lock are copied under it, in memory: the collector waits no longer than reading takes.
// Without a store file there is nothing at all. Throws Missing when the file to lock is, or Unreadable.
std::vector<CopiedFile> take_snapshot(const Place &place, Patience patience);

}  // namespace mcstore
