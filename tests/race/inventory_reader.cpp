#include "race/inventory_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <utility>

namespace tests {

int32_t InventoryReader::call(Mode mode, std::initializer_list<int32_t> allowed) {
  const uint32_t earliest = collector_.finished();
  const Answer answer = caller_.call(mode == Mode::kFull ? kind_.full : kind_.delta);
  const uint32_t latest = collector_.begun();

  SCOPED_TRACE(std::string(kind_.name) + (mode == Mode::kFull ? ", full" : ", delta") + ", after generation " +
               std::to_string(seen_.number));
  calls_++;
  if (answer.status == 0) {
    expect_whole(mode, answer, earliest, latest);
  } else {
    EXPECT_NE(std::ranges::find(allowed, answer.status), allowed.end()) << "the result is " << answer.status;
    EXPECT_EQ(answer.length, 0u);
    failures_++;
  }
  return answer.status;
}

void InventoryReader::expect_whole(Mode mode, const Answer &answer, uint32_t earliest, uint32_t latest) {
  // A delta says nothing when the file was not written since, and only then.
  const bool is_silent = mode == Mode::kDelta && answer.length == 0;
  const Generation now = generation(is_silent ? seen_.number : generation_in(answer.bytes));
  EXPECT_GE(now.number, earliest) << "a generation is missed";
  EXPECT_LE(now.number, latest) << "there is no such generation";
  if (is_silent) return;

  const News news = mode == Mode::kFull ? everything(now) : difference(kind_, seen_, now);
  EXPECT_EQ(answer.bytes, kind_.answer(news, answer.bytes)) << "of generation " << now.number;
  if (now.number != seen_.number) generations_seen_++;
  seen_ = now;
}

void InventoryReader::print_figures(const char *race) const {
  printf("%s, %s: %" PRIu64 " calls, %" PRIu64 " generations seen of %u, %" PRIu64 " refused\n", race, kind_.name,
         calls_, generations_seen_, collector_.finished(), failures_);
}

}  // namespace tests
