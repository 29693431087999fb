// Reads a store file front to back, never past the size that it had when it was looked at: buffers were made for that
// size, and a writer may have made the file longer since.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "shared/store_lock.h"

namespace mcserver {

class RecordReader {
 public:
  explicit RecordReader(const StoreFile &store) : RecordReader(store.stream(), store.size()) {}
  // From where the stream stands, no more than `size` bytes.
  RecordReader(FILE *stream, uint64_t size) : stream_(stream), remaining_(size) {}

  // Reads the next `size` bytes. False when that many did not come; what did come is in `to` all the same.
  bool read(void *to, size_t size);

  // The same for a whole record: `slot`, or null.
  template <typename Record>
  Record *read_into(Record *slot) {
    return read(slot, sizeof *slot) ? slot : nullptr;
  }

  // How many bytes are to come, as long as no read falls short.
  uint64_t remaining() const { return remaining_; }

  // Did the last read meet the end of the file? If not, it failed, or the reader stopped before the end.
  bool at_end() const { return at_end_; }

  // The errno of the read that fell short. While none did, it is errno as it stands.
  int error() const;

 private:
  FILE *stream_;
  uint64_t remaining_;
  bool fell_short_ = false;
  bool at_end_ = false;
  int error_ = 0;
};

}  // namespace mcserver
