#include "model/lock.h"

#include <cerrno>
#include <cstring>

namespace model {
namespace {

void trace_failure(World &world, const char *function, const LockTrace &trace, const char *path) {
  world.trace(function, trace.line, printed(trace.message, path, strerror(world.error())));
}

}  // namespace

LockedFile lock_and_open(World &world, const Lock &lock, const char *path) {
  const auto failed = [&](const LockTrace &trace, const char *file) {
    trace_failure(world, "getlock_and_open_file", trace, file);
    return LockedFile{kUnavailable};
  };
  const auto unlocked = [&](const LockedFile &result) {
    unlock_and_close(world, lock);
    return result;
  };

  world.clear_error();
  const auto lock_stream = world.open(lock.path);
  if (!lock_stream) return world.error() == ENOENT ? LockedFile{kNoData} : failed(lock.open_failed, lock.path);
  if (!world.works("fileno")) return failed(lock.no_descriptor, lock.path);
  if (!world.works("flock")) return failed(lock.not_locked, lock.path);
  auto facts = world.stat(lock.path);
  if (!facts) return unlocked({kNoData});
  if (!path) return {0, *facts, lock_stream};

  facts = world.stat(path);
  if (!facts) return unlocked({kNoData});
  const auto data = world.open(path);
  if (!data) return unlocked(failed(lock.data_open_failed, path));
  return {0, *facts, data};
}

void unlock_and_close(World &world, const Lock &lock) {
  if (!world.works("flock")) trace_failure(world, "unlock_and_close_file", lock.not_unlocked, lock.path);
}

Bytes lock_file(Choices &choices) { return tests::little_endian().u8(choices.below(4)); }

}  // namespace model
