// A block of memory that frees itself.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace mcserver {

class OwnedMemory {
 public:
  explicit OwnedMemory(void *block = nullptr) : block_(block) {}
  OwnedMemory(const OwnedMemory &) = delete;
  OwnedMemory &operator=(const OwnedMemory &) = delete;
  ~OwnedMemory() { free(block_); }

  // Replaces the block, of which there must be none yet.
  void take(void *block) { block_ = block; }

  explicit operator bool() const { return block_ != nullptr; }
  uint8_t *bytes() const { return static_cast<uint8_t *>(block_); }

  // The block as an array of numbers, for whose alignment malloc answers.
  template <typename Number>
  Number *array() const {
    return static_cast<Number *>(block_);
  }

 private:
  void *block_;
};

}  // namespace mcserver
