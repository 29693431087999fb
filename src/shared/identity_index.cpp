#include "shared/identity_index.h"

#include <numeric>

namespace mcserver {

void sort_places(std::span<uint16_t> places, const void *list,
                 int (*compare)(const void *list, uint16_t a, uint16_t b)) {
  std::iota(places.begin(), places.end(), uint16_t{0});
  std::sort(places.begin(), places.end(), [&](uint16_t a, uint16_t b) {
    const int order = compare(list, a, b);
    return order != 0 ? order < 0 : a < b;
  });
}

}  // namespace mcserver
