#include <gmock/gmock.h>

#include <cstring>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

StorCtlrInfo record(const Controller &controller) {
  StorCtlrInfo record;
  memcpy(&record, controller.stored().data(), sizeof record);
  return record;
}

CtlrSummary cached_entry(const Controller &controller) {
  CtlrSummary summary = {};
  summary.index = controller.index;
  strncpy(summary.serial_number, controller.serial.c_str(), sizeof summary.serial_number);
  summary.mod_timestamp = static_cast<int32_t>(controller.stamp);
  return summary;
}

class NewOrModified : public PluginTest {
 protected:
  int32_t answer(const Controller &controller, const std::vector<CtlrSummary> &cached) {
    const StorCtlrInfo asked = record(controller);
    return ask(&asked, cached.data(), static_cast<uint16_t>(cached.size()));
  }
  int32_t ask(const StorCtlrInfo *asked, const CtlrSummary *cached, uint16_t count) {
    return PLUGIN(new_ctlr_or_modified)(asked, cached, count);
  }
};

TEST_F(NewOrModified, IsZeroForTheSameStamp) {
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(0, 7)), cached_entry(numbered(1, 7))}), 0);
}

TEST_F(NewOrModified, IsOneForAnotherStamp) { EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 8))}), 1); }

TEST_F(NewOrModified, IsOneForAnotherIndex) {
  Controller moved = numbered(1);
  moved.index = 2;

  EXPECT_EQ(answer(moved, {cached_entry(numbered(1))}), 1);
}

TEST_F(NewOrModified, IsOneForAnotherSerialNumber) {
  Controller replaced = numbered(1);
  replaced.serial = "SERIAL-10";

  EXPECT_EQ(answer(replaced, {cached_entry(numbered(1))}), 1);
  EXPECT_EQ(answer(numbered(1), {cached_entry(replaced)}), 1);
}

TEST_F(NewOrModified, LooksNoFurtherThanTheCount) {
  const StorCtlrInfo asked = record(numbered(0));
  const CtlrSummary cached = cached_entry(numbered(0));

  EXPECT_EQ(ask(&asked, &cached, 0), 1);
  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

TEST_F(NewOrModified, TheFirstOfTwoLikeEntriesDecides) {
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 7)), cached_entry(numbered(1, 8))}), 0);
  EXPECT_EQ(answer(numbered(1, 7), {cached_entry(numbered(1, 8)), cached_entry(numbered(1, 7))}), 1);
}

TEST_F(NewOrModified, IsZeroWithoutARecordOrAList) {
  const StorCtlrInfo asked = record(numbered(0));
  const CtlrSummary cached = cached_entry(numbered(1));

  EXPECT_EQ(ask(nullptr, &cached, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 1), 0);
  EXPECT_EQ(ask(&asked, nullptr, 0), 0);
}

// What follows the serial numbers is not part of them: here, the firmware package and the vendor's number.
TEST_F(NewOrModified, ASerialNumberThatFillsItsFieldIsComparedWithinIt) {
  Controller filled = numbered(1);
  filled.serial = filling(31, 'S');
  StorCtlrInfo asked = record(filled);
  asked.firmware_package_build[0] = 'X';
  CtlrSummary cached = cached_entry(filled);
  cached.vendor_id = 0x5959;

  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

TEST_F(NewOrModified, WhatFollowsTheEndOfASerialNumberIsNotCompared) {
  StorCtlrInfo asked = record(numbered(1));
  asked.serial_number[30] = 'X';
  const CtlrSummary cached = cached_entry(numbered(1));

  EXPECT_EQ(ask(&asked, &cached, 1), 0);
}

}  // namespace
}  // namespace tests
