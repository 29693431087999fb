#include <gmock/gmock.h>

#include <cerrno>

#include "raid/bbus/bbu_test.h"
#include "raid/bbus/full_record.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kLittle = Bytes::Order::kLittle;
constexpr auto kBig = Bytes::Order::kBig;

class BbuInventory : public BbuTest {};

// ------------------------------------------------------------------------------------------------ header and records

TEST_F(BbuInventory, IsAHeaderAndBigEndianRecords) {
  store({{.controller = 3, .serial = 0x0102, .stamp = 0x01020304}});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, bbu_reply_size(1));
  EXPECT_EQ(reply.bytes().slice(0, 17),
            Bytes::hex("28 00 00 01") + big_endian().u32(kBbuSize) + Bytes::hex("00 A5 A5 A5 A5 A5 A5 A5 A5"));
  EXPECT_EQ(slot(reply, 0).slice(43, 2), Bytes::hex("01 02"));
  EXPECT_EQ(slot(reply, 0).slice(85, 4), Bytes::hex("01 02 03 04"));
}

TEST_F(BbuInventory, EveryFieldOfABatteryIsConvertedOrCopied) {
  files.write(kBbuStore, full_battery_record(kLittle));

  EXPECT_EQ(full().bytes(), bbu_header(1) + full_battery_record(kBig));
}

TEST_F(BbuInventory, EveryFieldOfACapacitorIsConvertedOrCopied) {
  files.write(kBbuStore, full_capacitor_record(kLittle));

  EXPECT_EQ(full().bytes(), bbu_header(1) + full_capacitor_record(kBig));
}

TEST_F(BbuInventory, RemainingCapacityAloneStaysLittleEndian) {
  const Bytes battery = Bytes::repeated(kBbuSize, 0).put(79, Bytes::hex("02 01 02 01"));
  files.write(kBbuStore, battery);

  EXPECT_EQ(slot(full(), 0).slice(79, 4), Bytes::hex("01 02 02 01"));
}

TEST_F(BbuInventory, AnyFlagButZeroMakesACapacitor) {
  const Bytes number = Bytes::hex("00 01 02 03 04 05 06 07 08 09 0A 0B");
  for (const uint8_t capacitor : std::vector<uint8_t>{1, 2, 0x80, 0xFF}) {
    files.write(kBbuStore, Bytes::repeated(kBbuSize, 0).put(72, Bytes().u8(capacitor)).put(73, number));
    EXPECT_EQ(slot(full(), 0).slice(73, 12), Bytes::hex("00 02 01 04 03 05 06 07 08 09 0A 0B")) << int{capacitor};
  }

  files.write(kBbuStore, Bytes::repeated(kBbuSize, 0).put(73, number));
  EXPECT_EQ(slot(full(), 0).slice(73, 12), Bytes::hex("00 01 02 03 05 04 07 06 08 09 0B 0A"));
}

TEST_F(BbuInventory, CodesThatNobodyKnowsPassThrough) {
  const Bytes record = full_battery_record(kLittle).put(1, Bytes::hex("FE FF"));
  files.write(kBbuStore, record);

  EXPECT_EQ(slot(full(), 0).slice(1, 2), Bytes::hex("FE FF"));
}

TEST_F(BbuInventory, RecordsStandInTheOrderOfTheFile) {
  store({bbu_of(7), bbu_of(2), bbu_of(5)});

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(7), bbu_of(2), bbu_of(5)}));
}

TEST_F(BbuInventory, ReportsTwoOfTheSameController) {
  store({bbu_of(1, 1), bbu_of(1, 2)});

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(1, 1), bbu_of(1, 2)}));
}

TEST_F(BbuInventory, WhatLiesBehindTheReplyIsNotTouched) {
  store({bbu_of(0)});

  EXPECT_EQ(full({.size = 1000}).buffer, bbu_reply({bbu_of(0)}).fill(1000 - bbu_reply_size(1), 0xA5));
}

TEST_F(BbuInventory, ComesAgainThoughNothingChanged) {
  store({bbu_of(0)});
  full();

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(BbuInventory, IsFullForAnyFlagButOne) {
  remember({bbu_of(0), bbu_of(1)});
  for (const int32_t flag : {0, 2, -1, 0x101}) {
    HostReplyBuffer buffer(1000, {Growth::kRefuse});
    uint32_t length = kUnwrittenLength;

    EXPECT_EQ(PLUGIN(get_store_bbu)(nullptr, buffer.bytes(), buffer.size(), &length, flag), 0) << flag;
    EXPECT_EQ(length, bbu_reply_size(2)) << flag;
    EXPECT_EQ(Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + length)), bbu_reply(bbus_below(2))) << flag;
  }
}

// --------------------------------------------------------------------------------------------------- size of the file

TEST_F(BbuInventory, TheNumberIsTheSizeDividedByThatOfARecord) {
  store({bbu_of(4), bbu_of(5)});
  EXPECT_EQ(files.read(kBbuStore).size(), 2 * kBbuSize);

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(4), bbu_of(5)}));
}

TEST_F(BbuInventory, APartialRecordAtTheEndIsLeftInItsSlotAndNotReported) {
  files.write(kBbuStore, bbu_file({bbu_of(4), bbu_of(5)}).fill(78, 0x77));
  trace_at(3);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(4), bbu_of(5)}));
  EXPECT_EQ(slot(reply, 2), Bytes::repeated(78, 0x77).fill(kBbuSize - 78, 0xA5));
  EXPECT_EQ(trace(), "");
}

TEST_F(BbuInventory, OfAnEmptyFileIsAHeaderAlone) {
  store({});
  trace_at(9);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 17u);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------ flash module

TEST_F(BbuInventory, TakesTheFlashModulesTextsFromItsImage) {
  store({bbu_of(0), bbu_of(2)});
  files.write(kFlashModuleImage, flash_module_image());

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(),
            bbu_header(2) + with_flash_module(bbu_of(0).reported()) + with_flash_module(bbu_of(2).reported()));
  EXPECT_EQ(slot(reply, 0).slice(89, 20), Bytes().text("Tarvo", 6).text("ted vendor", 14));
}

TEST_F(BbuInventory, ReadsTheImageAgainForEveryRecord) {
  store(bbus_below(3));
  files.write(kFlashModuleImage, flash_module_image());
  before_call("fopen", 4, [this] {  // after the lock, the store file, and the first image
    files.write(kFlashModuleImage, flash_module_image().put(15, Bytes().text("OTHER", 5)));
  });

  const Reply reply = full();

  EXPECT_EQ(slot(reply, 0), with_flash_module(bbu_of(0).reported()));
  EXPECT_EQ(slot(reply, 1), with_flash_module(bbu_of(1).reported()).put_text(89, "OTHER"));
  EXPECT_EQ(number_of_calls("fopen /var/log/TFM_FRU.bin"), 3);
}

TEST_F(BbuInventory, LogsAShortImageForEveryRecordAndKeepsTheCollectorsTexts) {
  store(bbus_below(2));
  files.write(kFlashModuleImage, flash_module_image().slice(0, 127));

  EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(2)));
  const std::string line = "mcserver_storage.cpp:2209:TFM_FRU file read : FAILED : bytes read = 127\n";
  EXPECT_THAT(system_log(), ElementsAre(line, line));
}

// ------------------------------------------------------------------------------------------------------ lock

TEST_F(BbuInventory, IsReadAndDumpedUnderTheLockOfTheControllersFile) {
  store({bbu_of(0)});
  files.write(kFlashModuleImage, flash_module_image());
  files.write_text("/var/mctool_stordebug", "");
  files.write_text("/var/mctool_bbudebug", "");
  std::vector<bool> is_free;
  for (const int fopen_call : {2, 3, 4, 5, 6, 7})
    before_call("fopen", fopen_call, [&] { is_free.push_back(files.is_unlocked(kStorageLock)); });

  full();

  // The store file, the record's dump, the image, its dump; then the lists, which are dumped when the lock is free.
  EXPECT_THAT(is_free, ElementsAre(false, false, false, false, true, true));
}

TEST_F(BbuInventory, SharesTheLockAndReleasesItOnce) {
  store({bbu_of(0)});

  full();

  EXPECT_THAT(calls(), Contains("fopen /var/storctlr_info"));
  EXPECT_EQ(number_of_calls("flock 1"), 1);
  EXPECT_EQ(number_of_calls("flock 8"), 1);
}

TEST_F(BbuInventory, WithoutALockFileIsNoDataAndLeavesNoTrace) {
  store({bbu_of(0)});
  files.remove(kStorageLock);
  trace_at(9);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "");
}

TEST_F(BbuInventory, WithoutAStoreFileIsNoDataAndLeavesNoTrace) {
  trace_at(9);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), "");
}

TEST_F(BbuInventory, WithAStoreFileThatMayNotBeReadIsUnavailable) {
  store({bbu_of(0)});
  trace_at(3);
  fail("fopen", 2, EACCES);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 168> [getlock_and_open_file]/var/storBBU_info Open failed Permission denied\n");
}

TEST_F(BbuInventory, WithoutTheLockIsUnavailable) {
  store({bbu_of(0)});
  fail("flock", 1, ENOLCK);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

// ------------------------------------------------------------------------------------------------------ read errors

TEST_F(BbuInventory, AReadErrorEndsTheReplyAndIsTracedWithItsReason) {
  store(bbus_below(3));
  trace_at(3);
  fail("fread", 2, EIO);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(trace(), bbu_read_error("Input/output error"));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(BbuInventory, AReadErrorAtTheFirstRecordLeavesAHeaderAlone) {
  store({bbu_of(0)});
  trace_at(3);
  fail("fread", 1, ESTALE);

  EXPECT_EQ(full().bytes(), bbu_header(0));
  EXPECT_EQ(trace(), bbu_read_error("Stale file handle"));
}

TEST_F(BbuInventory, AReadErrorBehindTheLastRecordIsTraced) {
  store({bbu_of(0)});
  trace_at(3);
  fail("fread", 2, EIO);

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(trace(), bbu_read_error("Input/output error"));
}

TEST_F(BbuInventory, AReadErrorInAPartialRecordIsTraced) {
  files.write(kBbuStore, bbu_file({bbu_of(0)}).fill(100, 0x77));
  trace_at(3);
  fail("fread", 2, EIO);

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(trace(), bbu_read_error("Input/output error"));
}

}  // namespace
}  // namespace tests
