#include "mcstore/source/reply_memory.h"

#include <sys/mman.h>

#include <stdexcept>

namespace mcstore {
namespace {

uint8_t *reserve(void *where, int how) {
  void *block = mmap(where, ReplyMemory::kLargest, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | how, -1, 0);
  if (block == MAP_FAILED) throw std::runtime_error("no address space for the reply buffer");
  return static_cast<uint8_t *>(block);
}

}  // namespace

ReplyMemory::ReplyMemory(uint32_t size) : bytes_(reserve(nullptr, 0)), first_size_(size), size_(size) {}

ReplyMemory::~ReplyMemory() { munmap(bytes_, kLargest); }

uint8_t *ReplyMemory::grow(uint32_t size, uint32_t *available) {
  if (size <= kLargest) size_ = size;
  *available = size_;
  return bytes_;
}

void ReplyMemory::clear() {
  reserve(bytes_, MAP_FIXED);  // fresh pages are zero
  size_ = first_size_;
}

}  // namespace mcstore
