#include "model/raid.h"

namespace model {
namespace {

constexpr Lock kRaidLocking = {
    .path = kRaidLock,
    .open_failed = {125, "%s Open failed %s\n"},
    .no_descriptor = {132, "Failed to get file descriptor for %s, %s\n"},
    .not_locked = {139, "Failed to lock File %s, %s\n"},
    .data_open_failed = {168, "%s Open failed %s\n"},
    .not_unlocked = {101, "Failed to UnLock File %s, %s\n"},
};

}  // namespace

LockedFile lock_and_open(World &world, const char *path) { return lock_and_open(world, kRaidLocking, path); }

void unlock_and_close(World &world) { unlock_and_close(world, kRaidLocking); }

void dump_record(World &world, const std::string &text) {
  if (world.exists(kRecordMarker)) world.append(std::string(kRecordMarker) + ".txt", text);
}

void dump_list(World &world, const std::string &marker, const std::string &title,
               const std::vector<std::string> &entries) {
  if (!world.exists(marker)) return;
  std::string text = "\n " + title + " \n";
  for (const std::string &entry : entries) text += "[" + entry + "]  ";
  world.append(marker + ".txt", text + "\n");
}

void trace_too_large(World &world, const std::string &function, int line, uint32_t needed, uint32_t granted) {
  world.trace(function, line,
              printed("Data length(%d) larger than %d\n", static_cast<int>(needed), static_cast<int>(granted)));
}

}  // namespace model
