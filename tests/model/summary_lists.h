// What is remembered of the devices: the list of the current read and that of the previous one.
#pragma once

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/world.h"

namespace model {

// A list that could not be made, or was lost, is null.
template <typename Entry>
using List = std::optional<std::vector<Entry>>;

template <typename Entry>
struct SummaryLists {
  List<Entry> cur;
  List<Entry> cached;
  uint16_t cached_count = 0;  // stays when the list is lost; what it still tells of then matches nothing
  uint32_t capacity = 0;      // of both, in entries

  bool exist() const { return cur && cached; }

  // Both are enlarged for a file with more records than ever before. What fails is an errno of ENOMEM: the name of that
  // list, or none.
  std::string make(World &world, uint32_t records) {
    if (cur) cur->clear();
    if (records == 0 || (cur && records <= capacity)) return "";
    capacity = 0;
    if (!enlarge(world, cur)) return "cur";
    if (!enlarge(world, cached)) {
      cur.reset();
      return "cached";
    }
    capacity = records;
    return "";
  }

  void exchange() {
    cached_count = cur ? static_cast<uint16_t>(cur->size()) : 0;
    std::swap(cur, cached);
  }

 private:
  static bool enlarge(World &world, List<Entry> &list) {
    world.clear_error();
    if (!world.works("realloc"))
      list.reset();
    else if (!list)
      list.emplace();
    return world.error() != ENOMEM;
  }
};

// As "%p" does.
template <typename Entry>
std::string printed_pointer(const List<Entry> &list) {
  return list ? kAnAddress : "(nil)";
}

}  // namespace model
