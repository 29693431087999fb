// Finds the entry of a summary list that has a device's identity. A file may hold tens of thousands of devices, and
// each of them is looked up: walking the list every time would take minutes.
#pragma once

#include <cstdint>
#include <span>

#include "shared/identity.h"
#include "shared/owned_memory.h"

namespace mcserver {

// A summary list, and where its entries have the identity. The same for all kinds: as templates, there would be six
// copies of all that follows.
struct SummaryList {
  std::span<const IdentityPlace> identity;
  const uint8_t *entries;
  size_t entry_size;
  size_t count;

  const uint8_t *entry(size_t place) const { return entries + place * entry_size; }
};

// The device that is looked for, by its record or by a summary entry.
struct Sought {
  const uint8_t *bytes;
  uint16_t IdentityPlace::*where;
};

// The first entry with this identity decides, whatever follows. Null when there is none.
const void *first_entry_of(const SummaryList &list, const Sought &sought);

// Gives the answers of first_entry_of(), from the places of the entries in the order of their identities. That is
// sorted, not hashed, because a file cannot be made to slow it down. Without memory for it the list is walked, which is
// no failure of the call.
class SortedPlaces {
 public:
  explicit SortedPlaces(const SummaryList &list);

  const void *entry_of(const Sought &sought) const;

 private:
  std::span<uint16_t> places() const { return {memory_.array<uint16_t>(), memory_ ? list_.count : 0}; }

  SummaryList list_;
  OwnedMemory memory_;
};

// The summary list of a kind, with an index to it: what stands above, in the kind's types.
template <typename Record, typename Entry, const auto &identity>
class IdentityIndex {
 public:
  explicit IdentityIndex(std::span<const Entry> entries) : sorted_(untyped(entries)) {}

  const Entry *find(const Record &record) const { return typed(sorted_.entry_of(by_record(record))); }
  const Entry *find(const Entry &entry) const { return typed(sorted_.entry_of({bytes_of(entry), kInSummary})); }

  // The same without an index, for a single look.
  static const Entry *first_of(std::span<const Entry> entries, const Record &record) {
    return typed(first_entry_of(untyped(entries), by_record(record)));
  }

 private:
  static constexpr auto kInRecord = &IdentityPlace::in_record;
  static constexpr auto kInSummary = &IdentityPlace::in_summary;

  template <typename Device>
  static const uint8_t *bytes_of(const Device &device) {
    return reinterpret_cast<const uint8_t *>(&device);
  }
  static Sought by_record(const Record &record) { return {bytes_of(record), kInRecord}; }
  static SummaryList untyped(std::span<const Entry> entries) {
    return {kIdentityPlaces<identity>, reinterpret_cast<const uint8_t *>(entries.data()), sizeof(Entry),
            entries.size()};
  }
  static const Entry *typed(const void *entry) { return static_cast<const Entry *>(entry); }

  SortedPlaces sorted_;
};

// Is a device with this time stamp new, or another than its entry remembers? `known` is null for one without an entry.
template <typename Entry, typename Stamp>
bool is_new_or_modified(const Entry *known, Stamp stamp) {
  return !known || known->mod_timestamp != stamp;
}

}  // namespace mcserver
