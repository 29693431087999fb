// A block of memory that frees itself.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace mcserver {

class OwnedMemory {
 public:
  explicit OwnedMemory(void *bytes) : bytes_(static_cast<uint8_t *>(bytes)) {}
  OwnedMemory(const OwnedMemory &) = delete;
  OwnedMemory &operator=(const OwnedMemory &) = delete;
  ~OwnedMemory() { free(bytes_); }

  explicit operator bool() const { return bytes_ != nullptr; }
  uint8_t *bytes() const { return bytes_; }

 private:
  uint8_t *bytes_;
};

}  // namespace mcserver
