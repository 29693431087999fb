#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

#include "raid/bbus/bbu_test.h"
#include "raid/bbus/full_record.h"

namespace tests {
namespace {

using testing::Range;

class HostileBbuFiles : public BbuTest {
 protected:
  std::string store_path() const { return files.real(kBbuStore); }

  void append(const Bytes &more) {
    std::ofstream file(store_path(), std::ios::binary | std::ios::app);
    for (size_t i = 0; i < more.size(); ++i) file.put(static_cast<char>(more[i]));
  }

  void shorten_to(size_t size) {
    if (truncate(store_path().c_str(), static_cast<off_t>(size)) != 0)
      throw std::runtime_error("cannot shorten the store file");
  }

  void switch_everything_on() {
    trace_at(9);
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_bbudebug", "");
    files.write(kFlashModuleImage, flash_module_image());
  }
};

// ------------------------------------------------------------------------------------------- while they are read

TEST_F(HostileBbuFiles, AFileThatGrowsIsReadToTheSizeItHad) {
  store({bbu_of(0)});
  trace_at(3);
  before_call("fread", 1, [this] { append(bbu_file(bbus_below(200))); });

  const Reply reply = full({.size = bbu_reply_size(1), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(trace(), "");
}

TEST_F(HostileBbuFiles, AFileThatGrowsAfterEachReadIsReadToTheSizeItHad) {
  store(bbus_below(10));
  trace_at(3);
  for (int read = 1; read < 12; ++read) before_call("fread", read, [this] { append(bbu_of(99).stored()); });

  const Reply reply = full({.size = bbu_reply_size(10), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.bytes(), bbu_reply(bbus_below(10)));
  EXPECT_EQ(trace(), "");
}

TEST_F(HostileBbuFiles, AnEmptyFileThatGrowsIsAHeaderAloneWithoutATrace) {
  store({});
  trace_at(3);
  before_call("fread", 1, [this] { append(bbu_file(bbus_below(3))); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(slot(reply, 0), untouched_bbu_slot());
  EXPECT_EQ(trace(), "");
}

TEST_F(HostileBbuFiles, APartialRecordThatIsCompletedMeanwhileStaysPartial) {
  const Bytes second = bbu_of(1).stored();
  files.write(kBbuStore, bbu_of(0).stored() + second.slice(0, 100));
  before_call("fread", 1, [&] { append(second.slice(100, kBbuSize - 100)); });

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), bbu_reply({bbu_of(0)}));
  EXPECT_EQ(slot(reply, 1), second.slice(0, 100).fill(kBbuSize - 100, 0xA5));
}

TEST_F(HostileBbuFiles, WhatGrewIsNewToTheNextDelta) {
  store({bbu_of(0)});
  before_call("fread", 1, [this] { append(bbu_of(1).stored()); });
  full();
  store(bbus_below(2), 2000);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(1)}));
}

TEST_F(HostileBbuFiles, AFileThatShrinksEndsWhereItEnds) {
  for (const size_t left : {0u, 1u, 2u}) {
    store(bbus_below(3));
    trace_at(3);
    before_call("fread", 1, [&] { shorten_to(left * kBbuSize + 10); });

    EXPECT_EQ(full().bytes(), bbu_reply(bbus_below(left)));
    EXPECT_EQ(trace(), "");
  }
}

// How many are still read depends on how far libc reads ahead.
TEST_F(HostileBbuFiles, AFileThatShrinksInTheMiddleGivesItsFirstRecords) {
  store(bbus_below(250));
  before_call("fread", 2, [this] { shorten_to(kBbuSize); });

  const Reply reply = full();

  const uint8_t count = reply.buffer[3];
  EXPECT_GE(count, 1);
  EXPECT_LT(count, 250);
  EXPECT_EQ(reply.bytes(), bbu_reply(bbus_below(count)));
}

// ------------------------------------------------------------------------------------- while they are being opened

TEST_F(HostileBbuFiles, AFileThatVanishesBeforeItIsOpenedIsUnavailable) {
  store({bbu_of(0)});
  before_call("fopen", 2, [this] { files.remove(kBbuStore); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(HostileBbuFiles, AFileReplacedByALongerOneIsReadToTheSizeOfTheFirst) {
  store({bbu_of(0)});
  before_call("fopen", 2, [this] { store(bbus_below(9)); });

  EXPECT_EQ(full({.size = bbu_reply_size(1), .growth = {Growth::kRefuse}}).bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(HostileBbuFiles, AFileReplacedByAShorterOneEndsWhereItEnds) {
  store(bbus_below(9));
  before_call("fopen", 2, [this] { store({bbu_of(7)}); });

  EXPECT_EQ(full().bytes(), bbu_reply({bbu_of(7)}));
}

TEST_F(HostileBbuFiles, ADirectoryIsAReadError) {
  std::filesystem::create_directories(store_path());
  trace_at(3);

  const Reply reply = full({.size = 1u << 20});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), bbu_header(0));
  EXPECT_EQ(trace(), bbu_read_error("Is a directory"));
}

// ---------------------------------------------------------------------------------------------------------- content

// What the conversion makes of any bytes.
Bytes converted(const Bytes &record) {
  const auto full_record = record[72] != 0 ? full_capacitor_record : full_battery_record;
  return with_numbers_reversed(record, full_record(Bytes::Order::kLittle), full_record(Bytes::Order::kBig));
}

TEST_F(HostileBbuFiles, TextsWithoutANulChangeNothing) {
  const Bytes record = Bytes::repeated(kBbuSize, 'A').put(73, Bytes::hex("01 02 03 04 05 06 07 08 09 0A 0B 0C"));
  files.write(kBbuStore, record);
  switch_everything_on();
  files.remove(kFlashModuleImage);

  EXPECT_EQ(full().bytes(), bbu_header(1) + converted(record));

  files.write(kBbuStore, record, 2000);
  EXPECT_EQ(delta().bytes(), bbu_header(0));
}

class GarbageInBbuFiles : public HostileBbuFiles, public testing::WithParamInterface<unsigned> {};

// Full and delta calls in turn. What a full one must hold is known whatever the file does.
TEST_P(GarbageInBbuFiles, IsAnsweredByteForByte) {
  std::mt19937 random(GetParam());
  switch_everything_on();
  for (int64_t round = 1; round <= 10; ++round) {
    std::vector<uint8_t> file(random() % 5000);
    const unsigned range = round % 2 ? 256 : 2;  // the narrow one makes like controllers likely
    for (uint8_t &byte : file) byte = static_cast<uint8_t>(random() % range);
    const size_t records = file.size() / kBbuSize;

    files.write(kBbuStore, Bytes(file), round);
    const Reply change = delta({.size = 17, .growth = {Growth::kMove}});
    const Reply whole = full();

    ASSERT_EQ(change.status, 0);
    ASSERT_EQ(change.length, bbu_reply_size(change.buffer[3]));
    ASSERT_EQ(whole.status, 0);
    Bytes expected = bbu_header(static_cast<uint8_t>(records));
    for (size_t i = 0; i < records; ++i)
      expected += with_flash_module(converted(Bytes(file).slice(i * kBbuSize, kBbuSize)));
    ASSERT_EQ(whole.bytes(), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(, GarbageInBbuFiles, Range(1u, 5u));

}  // namespace
}  // namespace tests
