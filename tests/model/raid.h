// What the RAID kinds share: the lock, the marker of the simulation, the dumps.
#pragma once

#include <string>
#include <vector>

#include "model/choices.h"
#include "model/lock.h"
#include "model/reply.h"
#include "model/world.h"

namespace model {

inline constexpr char kRaidLock[] = "/var/storctlr_info";
inline constexpr char kSimulationMarker[] = "/debug/mctool_storage_debug";
inline constexpr char kRecordMarker[] = "/var/mctool_stordebug";

inline constexpr int32_t kTooLarge = -13;

// A path of null opens the lock file alone, which then is the data.
LockedFile lock_and_open(World &world, const char *path);
void unlock_and_close(World &world);

// A record's dump, while the marker is there.
void dump_record(World &world, const std::string &text);

// A summary list's dump, while the kind's marker is there: its title, what is told of each entry, and the line's end.
void dump_list(World &world, const std::string &marker, const std::string &title,
               const std::vector<std::string> &entries);

// "Data length(%d) larger than %d", from an entry point or a retrieval.
void trace_too_large(World &world, const std::string &function, int line, uint32_t needed, uint32_t granted);

}  // namespace model
