#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

#include "raid/controllers/controller_test.h"
#include "raid/controllers/full_record.h"

namespace tests {
namespace {

using testing::IsEmpty;
using testing::Range;

// A full call first looks for the simulation's marker.
constexpr int kStoreStat = 2;

class HostileStoreFiles : public ControllerTest {
 protected:
  std::string store_path() const { return files.real(kControllerStore); }

  void append(const Bytes &more) {
    std::ofstream file(store_path(), std::ios::binary | std::ios::app);
    for (size_t i = 0; i < more.size(); ++i) file.put(static_cast<char>(more[i]));
  }

  void shorten_to(size_t size) {
    if (truncate(store_path().c_str(), static_cast<off_t>(size)) != 0)
      throw std::runtime_error("cannot shorten the store file");
  }

  // Another file in its place; whoever has the old one open goes on reading that.
  void replace_by(const Bytes &content) {
    files.remove(kControllerStore);
    files.write(kControllerStore, content, 2000);
  }

  void switch_everything_on() {
    trace_at(9);
    files.write_text("/var/mctool_stordebug", "");
    files.write_text("/var/mctool_ctlrdebug", "");
  }
};

// ------------------------------------------------------------------------------------------- while they are read

TEST_F(HostileStoreFiles, AFileThatGrowsIsReadToTheSizeItHad) {
  store(kReady, {numbered(0)});
  before_call("fread", 1, [this] {
    for (size_t number = 1; number < 200; ++number) append(numbered(number).stored());
  });

  const Reply reply = full({.size = controller_room(1), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_EQ(reply.buffer[controller_reply_size(1)], 0xA5);
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AFileThatGrowsAfterEachReadIsReadToTheSizeItHad) {
  store(kReady, numbered_below(10));
  for (int read = 1; read < 12; ++read) before_call("fread", read, [this] { append(numbered(99).stored()); });

  const Reply reply = full({.size = controller_room(10), .growth = {Growth::kRefuse}});

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, numbered_below(10)));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, APartialRecordThatIsCompletedMeanwhileStaysPartial) {
  const Bytes second = numbered(1).stored();
  files.write(kControllerStore, controller_file(kReady, {numbered(0)}) + second.slice(0, 700));
  before_call("fread", 1, [&] { append(second.slice(700, kControllerSize - 700)); });

  const Reply reply = full();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_EQ(slot(reply, 1), second.slice(0, 700).fill(kControllerSize - 700, 0xA5));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AnEmptyFileThatGrowsIsNoData) {
  files.write(kControllerStore, Bytes());
  before_call("fread", 1, [this] { append(controller_file(kReady, {numbered(0)})); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(HostileStoreFiles, WhatGrewIsNewToTheNextDelta) {
  store(kReady, {numbered(0)});
  before_call("fread", 1, [this] { append(numbered(1).stored()); });
  full();
  store(kReady, numbered_below(2), 2000);

  EXPECT_EQ(delta().bytes(), controller_reply(kReady, {numbered(1)}));
}

TEST_F(HostileStoreFiles, AFileThatShrinksEndsWhereItEnds) {
  store(kReady, numbered_below(3));
  before_call("fread", 1, [this] { shorten_to(controller_file_size(1) + 10); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AFileThatShrinksToItsStateIsAHeaderAlone) {
  store(kReady, numbered_below(3));
  before_call("fread", 1, [this] { shorten_to(1); });

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AFileThatShrinksToNothingIsNoData) {
  store(kReady, numbered_below(3));
  before_call("fread", 1, [this] { shorten_to(0); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

// How many are still read depends on how far libc reads ahead.
TEST_F(HostileStoreFiles, AFileThatShrinksInTheMiddleGivesItsFirstRecords) {
  store(kReady, numbered_below(20));
  before_call("fread", 2, [this] { shorten_to(controller_file_size(1)); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, 0);
  const uint8_t count = reply.buffer[4];
  EXPECT_GE(count, 1);
  EXPECT_LT(count, 20);
  EXPECT_EQ(reply.bytes(), controller_reply(kReady, numbered_below(count)));
}

// ------------------------------------------------------------------------------------- while they are being opened

TEST_F(HostileStoreFiles, AFileThatVanishesBeforeItsSizeIsKnownIsNoData) {
  store(kReady, {numbered(0)});
  before_call("stat", kStoreStat, [this] { files.remove(kControllerStore); });

  const Reply reply = full();

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(HostileStoreFiles, AFileThatVanishesAfterwardsIsReadToItsEnd) {
  store(kReady, {numbered(0)});
  before_call("fread", 1, [this] { files.remove(kControllerStore); });

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_F(HostileStoreFiles, AFileReplacedByALongerOneEndsWhereItEnds) {
  store(kReady, {numbered(0)});
  before_call("stat", kStoreStat, [this] { replace_by(controller_file(kNotReady, numbered_below(9))); });

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AFileReplacedByAShorterOneIsReadToTheShorterSize) {
  store(kReady, numbered_below(9));
  before_call("stat", kStoreStat, [this] { replace_by(controller_file(kNotReady, {numbered(77)})); });

  EXPECT_EQ(full({.size = controller_room(1), .growth = {Growth::kRefuse}}).bytes(),
            controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(HostileStoreFiles, AFileThatAppearsTooLateIsNoData) {
  before_call("fopen", 1, [this] { files.write(kControllerStore, Bytes().u8(kReady)); });
  EXPECT_EQ(full().status, 0);  // just in time

  files.remove(kControllerStore);
  EXPECT_EQ(full().status, -37);
}

// -------------------------------------------------------------------------------------------- things that are no files

TEST_F(HostileStoreFiles, ADirectoryIsNoData) {
  std::filesystem::create_directories(store_path());

  const Reply reply = full({.size = 1u << 20});

  EXPECT_EQ(reply.status, -37);
  EXPECT_EQ(reply.length, 0u);
}

TEST_F(HostileStoreFiles, ALinkToNothingIsNoData) {
  std::filesystem::create_directories(files.real("/var"));
  std::filesystem::create_symlink("nothing", store_path());

  EXPECT_EQ(full().status, -37);
}

TEST_F(HostileStoreFiles, ALinkToItselfIsUnavailable) {
  std::filesystem::create_directories(files.real("/var"));
  std::filesystem::create_symlink("storctlr_info", store_path());
  trace_at(3);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(),
            "<getlock_and_open_file: 125> [getlock_and_open_file]/var/storctlr_info Open failed "
            "Too many levels of symbolic links\n");
}

TEST_F(HostileStoreFiles, AFileThatMayNotBeReadIsUnavailable) {
  store(kReady, {numbered(0)});
  fail("fopen", 1, EACCES);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
}

// ---------------------------------------------------------------------------------------------------------- content

// What the conversion makes of any bytes.
Bytes converted(const Bytes &record) {
  return with_numbers_reversed(record, full_controller_record(Bytes::Order::kLittle),
                               full_controller_record(Bytes::Order::kBig));
}

TEST_F(HostileStoreFiles, TextsThatFillTheirFieldsChangeNothing) {
  const Bytes record = Bytes::repeated(kControllerSize, 'A');
  files.write(kControllerStore, Bytes().u8(kReady) + record);
  switch_everything_on();

  EXPECT_EQ(full().bytes(), controller_header(kReady, 1) + converted(record));
}

TEST_F(HostileStoreFiles, TextsThatFillTheirFieldsAreRecognisedAgain) {
  const Bytes record = Bytes::repeated(kControllerSize, 'A');
  files.write(kControllerStore, Bytes().u8(kReady) + record);
  full();
  files.write(kControllerStore, Bytes().u8(kReady) + record, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_F(HostileStoreFiles, TextsThatFillTheirFieldsAreRecognisedThoughTheirNeighboursChanged) {
  const Bytes record = Bytes::repeated(kControllerSize, 'A');
  Bytes neighbours_changed = record;
  neighbours_changed.put(138, Bytes::hex("00 42")).put(255, Bytes::hex("4242 4242 4242 4242"));
  files.write(kControllerStore, Bytes().u8(kReady) + record);
  full();
  files.write(kControllerStore, Bytes().u8(kReady) + neighbours_changed, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

class GarbageInStoreFiles : public HostileStoreFiles, public testing::WithParamInterface<unsigned> {};

// Full and delta calls in turn. What a full one must hold is known whatever the file does.
TEST_P(GarbageInStoreFiles, IsAnsweredByteForByte) {
  std::mt19937 random(GetParam());
  switch_everything_on();
  for (int64_t round = 1; round <= 25; ++round) {
    Bytes file;
    const size_t size = random() % 20000;
    const unsigned range = round % 2 ? 256 : 2;  // the narrow one makes like identities likely
    for (size_t i = 0; i < size; ++i) file.u8(random() % range);
    if (size > 0 && round % 3 == 0) file.put(0, Bytes().u8(kReady));
    const size_t records = size > 0 ? (size - 1) / kControllerSize : 0;

    files.write(kControllerStore, file, round);
    const Reply change = delta({.size = 18, .growth = {Growth::kMove}});
    const Reply whole = full();

    ASSERT_EQ(change.status, size > 0 ? 0 : -37);
    if (change.length > 0) {
      ASSERT_EQ(change.length, controller_reply_size(change.buffer[4]));
    }
    ASSERT_EQ(whole.status, size > 0 ? 0 : -37);
    if (size == 0) continue;
    Bytes expected = controller_header(file[0], static_cast<uint8_t>(records));
    for (size_t i = 0; i < records; ++i) expected += converted(file.slice(controller_file_size(i), kControllerSize));
    ASSERT_EQ(whole.bytes(), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(, GarbageInStoreFiles, Range(1u, 9u));

}  // namespace
}  // namespace tests
