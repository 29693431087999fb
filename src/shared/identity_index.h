// Finds the entry of a summary list that has a device's identity. A file may hold tens of thousands of devices, and
// each of them is looked up: walking the list every time would take minutes.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "shared/owned_memory.h"

namespace mcserver {

// The first entry with this identity decides, whatever follows. Null when there is none.
template <typename Identity, typename Entry, typename Device>
const Entry *first_of(std::span<const Entry> entries, const Device &device) {
  const auto is_it = [&](const Entry &entry) { return Identity::compare(entry, device) == 0; };
  const auto found = std::find_if(entries.begin(), entries.end(), is_it);
  return found == entries.end() ? nullptr : &*found;
}

// Is a device with this time stamp new, or another than its entry remembers? `known` is null for one without an entry.
template <typename Entry, typename Stamp>
bool is_new_or_modified(const Entry *known, Stamp stamp) {
  return !known || known->mod_timestamp != stamp;
}

// Fills in the places 0, 1, 2, ... and sorts them by the entries of the list that stand there, and by themselves where
// those are equal. One function for all kinds: as a template, there would be six copies of it.
void sort_places(std::span<uint16_t> places, const void *list,
                 int (*compare)(const void *list, uint16_t a, uint16_t b));

// Gives the answers of first_of(), from the places of the entries in the order of their identities. That is sorted, not
// hashed, because a file cannot be made to slow it down. `Identity::compare` is less than, equal to or greater than 0
// like strcmp, for any two of the kind's records and summary entries.
template <typename Identity, typename Entry>
class IdentityIndex {
 public:
  explicit IdentityIndex(std::span<const Entry> entries) : entries_(entries), memory_(allocate(entries.size())) {
    sort_places(places(), entries_.data(), [](const void *list, uint16_t a, uint16_t b) {
      const auto *const own = static_cast<const Entry *>(list);
      return Identity::compare(own[a], own[b]);
    });
  }

  template <typename Device>
  const Entry *find(const Device &device) const {
    if (!memory_) return first_of<Identity>(entries_, device);
    const auto place = std::lower_bound(places().begin(), places().end(), device, [&](uint16_t a, const Device &b) {
      return Identity::compare(entries_[a], b) < 0;
    });
    if (place == places().end() || Identity::compare(entries_[*place], device) != 0) return nullptr;
    return &entries_[*place];
  }

 private:
  static constexpr size_t kLongest = UINT16_MAX;  // as long as the interfaces' counts allow

  // Null when there is no memory: then the list is walked. That is no failure of the call, so errno does not tell it.
  static void *allocate(size_t entries) {
    const int error = errno;
    void *memory = entries > 0 && entries <= kLongest ? malloc(entries * sizeof(uint16_t)) : nullptr;
    errno = error;
    return memory;
  }

  std::span<uint16_t> places() const { return {memory_.array<uint16_t>(), memory_ ? entries_.size() : 0}; }

  std::span<const Entry> entries_;
  OwnedMemory memory_;
};

}  // namespace mcserver
