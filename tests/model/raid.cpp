#include "model/raid.h"

#include <cerrno>
#include <cstring>

namespace model {
namespace {

constexpr char kLocking[] = "getlock_and_open_file";

LockedFile failed(World &world, int32_t status) {
  unlock_and_close(world);
  return {status};
}

}  // namespace

LockedFile lock_and_open(World &world, const char *path) {
  world.clear_error();
  const auto lock = world.open(kRaidLock);
  if (!lock) {
    if (world.error() == ENOENT) return {kNoData};
    world.trace(kLocking, 125, printed("%s Open failed %s\n", kRaidLock, strerror(world.error())));
    return {kUnavailable};
  }
  if (!world.works("fileno")) {
    world.trace(kLocking, 132,
                printed("Failed to get file descriptor for %s, %s\n", kRaidLock, strerror(world.error())));
    return {kUnavailable};
  }
  if (!world.works("flock")) {
    world.trace(kLocking, 139, printed("Failed to lock File %s, %s\n", kRaidLock, strerror(world.error())));
    return {kUnavailable};
  }
  auto facts = world.stat(kRaidLock);
  if (!facts) return failed(world, kNoData);
  if (!path) return {0, *facts, lock};

  facts = world.stat(path);
  if (!facts) return failed(world, kNoData);
  const auto data = world.open(path);
  if (!data) {
    world.trace(kLocking, 168, printed("%s Open failed %s\n", path, strerror(world.error())));
    return failed(world, kUnavailable);
  }
  return {0, *facts, data};
}

void unlock_and_close(World &world) {
  if (!world.works("flock"))
    world.trace("unlock_and_close_file", 101,
                printed("Failed to UnLock File %s, %s\n", kRaidLock, strerror(world.error())));
}

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

tests::Bytes lock_file(Choices &choices) { return tests::little_endian().u8(choices.below(4)); }

}  // namespace model
