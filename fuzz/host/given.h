// What a host may pass to the exported helpers of a kind: items of any bytes, each block as long as what it holds, so
// that the sanitizers see what is read or written beyond; or nothing.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/host/choices.h"
#include "mcserver_storage.h"

namespace fuzz {

// Up to three items, or a null pointer.
template <typename Item>
class GivenItems {
 public:
  explicit GivenItems(Choices &choices) {
    const uint8_t choice = choices.below(5);
    if (choice == 4) return;
    count_ = choice;
    items_.reset(new Item[count_]());
    for (uint16_t i = 0; i < count_; ++i) fill(items_[i], choices);
  }

  Item *data() const { return items_.get(); }
  uint16_t count() const { return count_; }

 private:
  // One byte everywhere, with a few others strewn in.
  static void fill(Item &item, Choices &choices) {
    memset(&item, choices.byte(), sizeof item);
    for (int patches = choices.below(4); patches > 0; --patches) {
      const size_t at = choices.number() % sizeof item;
      const std::string bytes = choices.bytes(choices.byte());
      memcpy(reinterpret_cast<char *>(&item) + at, bytes.data(), std::min(bytes.size(), sizeof item - at));
    }
  }

  std::unique_ptr<Item[]> items_;
  uint16_t count_ = 0;
};

inline const char *given_path(Choices &choices) {
  static const std::string kTooLong(400, '/');
  const char *const paths[] = {"/var", "/text.txt", "/nowhere", kTooLong.c_str(), nullptr};
  return paths[choices.below(std::size(paths))];
}

constexpr uint32_t kLongestText = 4096;

// The arguments of a kind's helpers.
template <typename Record, typename Summary, typename ReplyHeader>
struct Given {
  explicit Given(Choices &choices)
      : records(choices),
        cur(choices),
        cached(choices),
        // Room for every cached device behind an empty reply.
        reply_memory(new uint8_t[sizeof(ReplyHeader) + cached.count() * sizeof(Record)]()),
        text_size(choices.number() % kLongestText),
        text(new char[text_size]),
        flags(choices.byte()),
        path(given_path(choices)),
        other_path(given_path(choices)) {}

  Record *record() const { return records.count() > 0 ? records.data() : nullptr; }
  uint8_t *reply() const { return flags & 1 ? nullptr : reply_memory.get(); }
  FILE *stream() const { return flags & 2 ? nullptr : outfp; }
  const char *title() const { return flags & 4 ? nullptr : "title"; }
  char *out() const { return flags & 4 ? nullptr : text.get(); }
  int32_t number() const { return flags >> 3; }

  GivenItems<Record> records;
  GivenItems<Summary> cur;
  GivenItems<Summary> cached;
  std::unique_ptr<uint8_t[]> reply_memory;
  uint32_t text_size;
  std::unique_ptr<char[]> text;
  uint8_t flags;
  const char *path;
  const char *other_path;
};

}  // namespace fuzz
