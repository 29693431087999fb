// What a kind remembers of its devices: the cur list, which the running call fills, and the cached list, which the
// previous call left. At the end of a successful call they exchange roles.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

namespace mcserver {

// The memory of one list: a block, or none. A list that was made empty is there all the same, without a block.
struct ListMemory {
  void *bytes = nullptr;
  uint32_t size = 0;  // 0 when there is no block

  // Makes the block `new_size` bytes; what is new in it is zero. False, and no block any more, when there is no
  // memory. That is told by errno alone: a null block without ENOMEM is not a failure.
  bool resize(uint32_t new_size);

  // Makes the list, zeroed, if there is none yet. False when there is no memory.
  bool make(uint32_t new_size);

  // Makes it at least `new_size` bytes; what is new in it is zero. False, and all as it was, when there is no memory.
  bool enlarge(uint32_t new_size);

  // Zeroes the first `length` bytes, or as many as there are.
  void clear(uint32_t length);

  void release();
};

// What came of making the lists long enough.
enum class ListSizing { kEnough, kCurFailed, kCachedFailed };

// Constant-initialised, and released by the kind's own fini function, so that loading the plug-in runs no code.
// `CurCount` counts the cur list's entries; where it is narrow it wraps, and the first entries are written over.
template <typename Entry, typename CurCount = uint32_t>
class SummaryLists {
 public:
  // Makes both lists at least `entries` long and starts the cur list anew. They grow when they must and never shrink.
  ListSizing reserve(uint32_t entries);

  // For the kinds that make their lists once, `entries` long, and judge that by a null result, not by errno. When the
  // file has more to add than that, `to_add`, the cur list is enlarged; without memory for it both are kept.
  ListSizing make(uint32_t entries, uint32_t to_add);

  bool exist() const { return cur_.bytes && cached_.bytes; }

  const Entry *cur() const { return static_cast<const Entry *>(cur_.bytes); }
  CurCount cur_count() const { return cur_count_; }

  const Entry *cached() const { return static_cast<const Entry *>(cached_.bytes); }

  // How many entries the previous call left. This is what sizes and dumps go by.
  uint16_t cached_count() const { return cached_count_; }

  // How many of these can be compared: none, when the list was lost to a failed allocation since.
  uint16_t comparable_count() const { return cached_is_lost_ ? 0 : cached_count_; }

  // The next entry of the cur list. reserve() or make() has made room for it.
  Entry &add() { return static_cast<Entry *>(cur_.bytes)[cur_count_++]; }

  // Clears that many entries of the cached list, and makes the cur list the cached one.
  void rotate(uint32_t entries_to_clear);

  void release() {
    cur_.release();
    cached_.release();
  }

 private:
  static uint32_t bytes_for(uint32_t entries) { return static_cast<uint32_t>(entries * sizeof(Entry)); }

  ListMemory cur_;
  ListMemory cached_;
  uint32_t capacity_ = 0;  // bytes that both lists have at least, 0 after a failure
  CurCount cur_count_ = 0;
  uint16_t cached_count_ = 0;
  bool cached_is_lost_ = false;
};

template <typename Entry, typename CurCount>
ListSizing SummaryLists<Entry, CurCount>::reserve(uint32_t entries) {
  cur_count_ = 0;
  const uint32_t needed = bytes_for(entries);
  if (needed == 0 || (cur_.bytes && capacity_ >= needed)) return ListSizing::kEnough;

  capacity_ = 0;
  if (!cur_.resize(needed)) return ListSizing::kCurFailed;
  cur_.clear(needed);  // of what the block held before, too

  // The cached count may stand for more than this file has: it survives a failed allocation of the cur list.
  const bool cached_grew = cached_.resize(std::max(needed, bytes_for(cached_count_)));
  if (!cached_.bytes) cached_is_lost_ = true;
  if (!cached_grew) {
    cur_.release();
    return ListSizing::kCachedFailed;
  }
  capacity_ = needed;
  return ListSizing::kEnough;
}

template <typename Entry, typename CurCount>
ListSizing SummaryLists<Entry, CurCount>::make(uint32_t entries, uint32_t to_add) {
  cur_count_ = 0;
  if (!cur_.make(bytes_for(entries))) return ListSizing::kCurFailed;
  if (!cached_.make(bytes_for(entries))) {
    cur_.release();
    return ListSizing::kCachedFailed;
  }
  return cur_.enlarge(bytes_for(to_add)) ? ListSizing::kEnough : ListSizing::kCurFailed;
}

template <typename Entry, typename CurCount>
void SummaryLists<Entry, CurCount>::rotate(uint32_t entries_to_clear) {
  cached_.clear(bytes_for(entries_to_clear));
  cached_count_ = static_cast<uint16_t>(cur_count_);
  cached_is_lost_ = false;
  std::swap(cur_, cached_);
}

}  // namespace mcserver
