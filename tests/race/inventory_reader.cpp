#include "race/inventory_reader.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <utility>

namespace tests {

void InventoryReader::call(Mode mode) {
  const uint32_t earliest = collector_.finished();
  const Answer answer = caller_.call(mode == Mode::kFull ? kind_.full : kind_.delta);
  const uint32_t latest = collector_.begun();

  SCOPED_TRACE(std::string(kind_.name) + (mode == Mode::kFull ? ", full" : ", delta") + ", after generation " +
               std::to_string(seen_.number));
  calls_++;
  if (answer.status == 0) {
    expect_whole(mode, answer, earliest, latest);
  } else {
    EXPECT_EQ(answer.status, -35);
    EXPECT_EQ(answer.length, 0u);
    refused_++;
  }
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

void InventoryReader::print_figures(const std::string &race) const {
  printf("%s, %s: %" PRIu64 " calls, %" PRIu64 " generations seen of %u, %" PRIu64 " refused\n", race.c_str(),
         kind_.name, calls_, generations_seen_, collector_.finished(), refused_);
}

}  // namespace tests
