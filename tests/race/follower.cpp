#include "race/follower.h"

#include <gtest/gtest.h>

namespace tests {

void Follower::follow(Mode mode, const Answer &answer, uint32_t earliest, uint32_t latest) {
  SCOPED_TRACE(std::string(entry_point(kind_, mode)) + " after generation " + std::to_string(seen_.number));
  ASSERT_EQ(answer.status, 0);
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

}  // namespace tests
