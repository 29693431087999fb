#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>

#include "raid/virtual_drives/full_record.h"
#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

class HostileVirtualDriveFiles : public VirtualDriveTest {
 protected:
  void append(const Bytes &more) {
    std::ofstream file(files.real(kVirtualDriveStore), std::ios::binary | std::ios::app);
    file.write(reinterpret_cast<const char *>(more.data()), static_cast<std::streamsize>(more.size()));
  }

  void switch_everything_on() {
    trace_at(9);
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_vddebug", "");
  }
};

// ------------------------------------------------------------------------------------------- while they are read

class GrowingVirtualDriveFile : public HostileVirtualDriveFiles, public testing::WithParamInterface<int> {};

// Two reads make the first pass, and two the second.
TEST_P(GrowingVirtualDriveFile, IsReadToTheSizeItHad) {
  trace_at(9);
  store({volume(0)});
  before_call("fread", GetParam(), [this] { append(virtual_drive_file(volumes_below(8))); });

  const Reply reply = full({.size = length_of(1), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(trace(), "");
}

INSTANTIATE_TEST_SUITE_P(, GrowingVirtualDriveFile, Values(1, 2, 3, 4));

TEST_F(HostileVirtualDriveFiles, AnEmptyFileThatGrowsIsAHeader) {
  trace_at(9);
  store({});
  before_call("fread", 1, [this] { append(virtual_drive_file(volumes_below(3))); });

  const Reply reply = full({.size = 17, .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.bytes(), virtual_drive_header(0));
  EXPECT_EQ(trace(), "");
}

TEST_F(HostileVirtualDriveFiles, APartialRecordThatIsCompletedMeanwhileStaysPartial) {
  const Bytes second = volume(1).stored();
  files.write(kVirtualDriveStore, volume(0).stored() + second.slice(0, 100));
  before_call("fread", 1, [&] { append(second.slice(100, kVirtualDriveSize - 100)); });

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), virtual_drive_reply({volume(0)}));
  EXPECT_EQ(slot(reply, 1), second.slice(0, 100).fill(kVirtualDriveSize - 100, kUntouched));
}

TEST_F(HostileVirtualDriveFiles, WhatGrewIsNewToTheNextDelta) {
  store({volume(0)});
  before_call("fread", 1, [this] { append(volume(1).stored()); });
  full();
  store(volumes_below(2), 2000);

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(1)}));
}

TEST_F(HostileVirtualDriveFiles, AFileThatShrinksEndsWhereItEnds) {
  trace_at(9);
  for (const size_t left : {0u, 1u, 2u}) {
    store(volumes_below(3));
    before_call("fread", 1, [&] { files.resize(kVirtualDriveStore, left * kVirtualDriveSize + 10); });

    EXPECT_EQ(full().bytes(), virtual_drive_reply(volumes_below(left)));
    EXPECT_EQ(trace(), "");
  }
}

TEST_F(HostileVirtualDriveFiles, AFileThatShrinksBetweenTheTwoPassesIsComparedAsItWas) {
  remember(volumes_below(3));
  store({volume(0, kOrdinary), volume(1, kOrdinary), volume(2, kOrdinary)}, 2000);
  before_call("fread", 5, [this] { files.resize(kVirtualDriveStore, kVirtualDriveSize, 2000); });

  EXPECT_EQ(delta().bytes(), virtual_drive_reply({volume(0, kOrdinary)}));
  EXPECT_THAT(system_log(), IsEmpty());
  store({volume(0), volume(3)}, 3000);
  EXPECT_EQ(delta().bytes().slice(0, 4), Bytes::hex("28 00 08 04"));  // two of them are reported, and two are gone
}

TEST_F(HostileVirtualDriveFiles, AFileThatGrowsBetweenTheTwoPassesIsComparedAsItWas) {
  remember(volumes_below(2));
  store({volume(0)}, 2000);
  before_call("fread", 3, [this] { append(volume(1).stored()); });

  EXPECT_EQ(delta().bytes(), virtual_drive_header(1) + gone_virtual_drive(volume(1), volume(0).skipped()));
}

TEST_F(HostileVirtualDriveFiles, AFileReplacedByAnotherIsReadToTheSizeOfTheFirst) {
  store({volume(0)});
  before_call("fopen", 2, [this] { store(volumes_below(5)); });
  EXPECT_EQ(full({.size = length_of(1), .growth = {Growth::kRefuse}}).bytes(), virtual_drive_reply({volume(0)}));

  before_call("fopen", 2, [this] { store({volume(7)}); });
  EXPECT_EQ(full().bytes(), virtual_drive_reply({volume(7)}));
}

TEST_F(HostileVirtualDriveFiles, AFileThatVanishesBeforeItIsOpenedIsUnavailable) {
  store({volume(0)});
  before_call("fopen", 2, [this] { files.remove(kVirtualDriveStore); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(HostileVirtualDriveFiles, ADirectoryIsAReadError) {
  std::filesystem::create_directories(files.real(kVirtualDriveStore));
  trace_at(3);

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), virtual_drive_header(0));
  EXPECT_EQ(trace(), virtual_drive_read_error("Is a directory"));
}

// ---------------------------------------------------------------------------------------------------------- content

// What the conversion makes of any record. The number of hot spares that it converts stands in front of them.
Bytes converted(Bytes record) {
  constexpr size_t kSpares = 95;
  constexpr size_t kSpareSize = 20;
  const Bytes no_spares = Bytes::repeated(256 * kSpareSize, 0);
  record = with_numbers_reversed(record, full_virtual_drive_record(Bytes::Order::kLittle).put(kSpares, no_spares),
                                 full_virtual_drive_record(Bytes::Order::kBig).put(kSpares, no_spares));

  const Bytes spare_in_little_endian = little_endian().u8(1).u8(2).u8(3).u64(0x0405060708).u64(0x090A0B0C0D).u8(4);
  const Bytes spare_in_big_endian = big_endian().u8(1).u8(2).u8(3).u64(0x0405060708).u64(0x090A0B0C0D).u8(4);
  for (size_t i = 0; i < record[kSpares - 1]; ++i) {
    const size_t place = kSpares + i * kSpareSize;
    record.put(place,
               with_numbers_reversed(record.slice(place, kSpareSize), spare_in_little_endian, spare_in_big_endian));
  }
  return record;
}

TEST_F(HostileVirtualDriveFiles, CountsBeyondTheArraysAndTextsWithoutANulChangeNothing) {
  switch_everything_on();
  const Bytes record = Bytes::repeated(kVirtualDriveSize, 0xFF);
  files.write(kVirtualDriveStore, record);
  EXPECT_EQ(full().bytes(), virtual_drive_header(1) + converted(record));
  files.write(kVirtualDriveStore, record, 2000);
  EXPECT_EQ(delta().length, 0u);
  store({}, 3000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(),
            virtual_drive_header(1) +
                untouched_virtual_drive_slot().put(0, Bytes::repeated(51, 0xFF)).put(51, Bytes::hex("06")));
  EXPECT_THAT(system_log(), ElementsAre("mcserver_storage.cpp:1744:Deleted-Event VD TargetID=255, name=" +
                                        std::string(16, '\xFF') + " mod_timestamp=-1515870811\n"));
}

class GarbageInVirtualDriveFiles : public HostileVirtualDriveFiles, public testing::WithParamInterface<unsigned> {};

// Full and delta calls in turn. What a full one must hold is known whatever the file does.
TEST_P(GarbageInVirtualDriveFiles, IsAnsweredByteForByte) {
  std::mt19937 random(GetParam());
  switch_everything_on();
  for (int64_t round = 1; round <= 4; ++round) {
    std::vector<uint8_t> file(random() % 20000);
    const unsigned range = round % 2 ? 256 : 2;  // the narrow one makes like GUIDs likely
    for (uint8_t &byte : file) byte = static_cast<uint8_t>(random() % range);
    const size_t records = file.size() / kVirtualDriveSize;

    files.write(kVirtualDriveStore, Bytes(file), round);
    const Reply change = delta({.size = 17, .growth = {Growth::kMove}});
    const Reply whole = full();

    ASSERT_EQ(change.status, 0);
    ASSERT_EQ(change.length, change.buffer[3] == 0 ? 0 : length_of(change.buffer[3]));
    ASSERT_EQ(whole.status, 0);
    Bytes expected = virtual_drive_header(static_cast<uint8_t>(records));
    for (size_t i = 0; i < records; ++i)
      expected += converted(Bytes(file).slice(i * kVirtualDriveSize, kVirtualDriveSize));
    ASSERT_EQ(whole.bytes(), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(, GarbageInVirtualDriveFiles, testing::Range(1u, 5u));

}  // namespace
}  // namespace tests
