#include "shared/identity_index.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <numeric>

namespace mcserver {
namespace {

constexpr size_t kLongest = UINT16_MAX;  // as long as the interfaces' counts allow

// Less than, equal to or greater than 0 like strcmp, for the list's entry and any device of the kind.
int compare(const SummaryList &list, size_t entry, const Sought &sought) {
  for (const IdentityPlace &place : list.identity) {
    const uint8_t *const a = list.entry(entry) + place.in_summary;
    const uint8_t *const b = sought.bytes + place.*sought.where;
    const int order = place.is_text
                          ? strncmp(reinterpret_cast<const char *>(a), reinterpret_cast<const char *>(b), place.width)
                          : *a - *b;
    if (order != 0) return order;
  }
  return 0;
}

// Null when there is no memory. That is no failure of the call, so errno does not tell it.
void *allocate_places(size_t count) {
  const int error = errno;
  void *const memory = count > 0 && count <= kLongest ? malloc(count * sizeof(uint16_t)) : nullptr;
  errno = error;
  return memory;
}

}  // namespace

const void *first_entry_of(const SummaryList &list, const Sought &sought) {
  for (size_t entry = 0; entry < list.count; ++entry)
    if (compare(list, entry, sought) == 0) return list.entry(entry);
  return nullptr;
}

SortedPlaces::SortedPlaces(const SummaryList &list) : list_(list), memory_(allocate_places(list.count)) {
  std::iota(places().begin(), places().end(), uint16_t{0});
  std::sort(places().begin(), places().end(), [this](uint16_t a, uint16_t b) {
    const int order = compare(list_, a, {list_.entry(b), &IdentityPlace::in_summary});
    return order != 0 ? order < 0 : a < b;  // the first of equal ones comes first
  });
}

const void *SortedPlaces::entry_of(const Sought &sought) const {
  if (!memory_) return first_entry_of(list_, sought);
  const auto place = std::lower_bound(places().begin(), places().end(), sought,
                                      [this](uint16_t a, const Sought &b) { return compare(list_, a, b) < 0; });
  if (place == places().end() || compare(list_, *place, sought) != 0) return nullptr;
  return list_.entry(*place);
}

}  // namespace mcserver
