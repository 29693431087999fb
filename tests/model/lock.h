// A store file, read under the lock of its family.
#pragma once

#include <optional>

#include "model/choices.h"
#include "model/world.h"

namespace model {

inline constexpr int32_t kUnavailable = -35;
inline constexpr int32_t kNoData = -37;

// What a family traces of a failing step: the line, and the message, which takes the file and then the reason.
struct LockTrace {
  int line;
  const char *message;
};

// A family's lock file, and its traces.
struct Lock {
  const char *path;
  LockTrace open_failed;
  LockTrace no_descriptor;
  LockTrace not_locked;
  LockTrace data_open_failed;
  LockTrace not_unlocked;
};

// What comes of locking and opening a kind's store file.
struct LockedFile {
  int32_t status;
  FileFacts facts = {};
  std::optional<Stream> stream = {};  // of the kind's own file
};

// A path of null opens the lock file alone, which then is the data.
LockedFile lock_and_open(World &world, const Lock &lock, const char *path);
void unlock_and_close(World &world, const Lock &lock);

// The lock file's content for kinds that have a store file of their own.
Bytes lock_file(Choices &choices);

}  // namespace model
