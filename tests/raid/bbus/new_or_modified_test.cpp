#include <gtest/gtest.h>

#include <cstring>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

StorBbuInfo record(const Bbu &bbu) {
  StorBbuInfo record;
  memcpy(&record, bbu.stored().data(), sizeof record);
  return record;
}

BbuSummary summary(const Bbu &bbu) { return {.controller_index = bbu.controller, .mod_timestamp = bbu.stamp}; }

class NewOrModifiedBbu : public PluginTest {
 protected:
  int32_t answer(const Bbu &bbu, const std::vector<BbuSummary> &cached) {
    const StorBbuInfo asked = record(bbu);
    return ask(&asked, cached.data(), static_cast<uint16_t>(cached.size()));
  }
  int32_t ask(const StorBbuInfo *asked, const BbuSummary *cached, uint16_t count) {
    return PLUGIN(new_bbu_or_modified)(asked, cached, count);
  }
};

TEST_F(NewOrModifiedBbu, IsZeroForTheSameStamp) {
  EXPECT_EQ(answer(bbu_of(1, 7), {summary(bbu_of(0, 9)), summary(bbu_of(1, 7))}), 0);
}

TEST_F(NewOrModifiedBbu, IsOneForAnotherStamp) {
  EXPECT_EQ(answer(bbu_of(1, 7), {summary(bbu_of(1, 8))}), 1);
  EXPECT_EQ(answer(bbu_of(1, 7), {summary(bbu_of(1, 0x07000000))}), 1);
}

TEST_F(NewOrModifiedBbu, IsOneForAnotherController) { EXPECT_EQ(answer(bbu_of(2, 7), {summary(bbu_of(1, 7))}), 1); }

TEST_F(NewOrModifiedBbu, LooksNoFurtherThanTheCount) {
  const StorBbuInfo asked = record(bbu_of(0));
  const BbuSummary cached = summary(bbu_of(0));

  EXPECT_EQ(ask(&asked, &cached, 0), 1);
  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

TEST_F(NewOrModifiedBbu, TheFirstOfTwoLikeEntriesDecides) {
  EXPECT_EQ(answer(bbu_of(1, 7), {summary(bbu_of(1, 7)), summary(bbu_of(1, 8))}), 0);
  EXPECT_EQ(answer(bbu_of(1, 7), {summary(bbu_of(1, 8)), summary(bbu_of(1, 7))}), 1);
}

TEST_F(NewOrModifiedBbu, IsZeroWithoutARecordOrAList) {
  const StorBbuInfo asked = record(bbu_of(0));
  const BbuSummary cached = summary(bbu_of(1));

  EXPECT_EQ(ask(nullptr, &cached, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 0), 0);
}

}  // namespace
}  // namespace tests
