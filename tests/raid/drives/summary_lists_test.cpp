#include <gmock/gmock.h>

#include <cerrno>

#include "raid/drives/drive_test.h"

namespace tests {
namespace {

class DriveLists : public DriveTest {
 protected:
  auto allocations() const { return number_of_calls("calloc") + number_of_calls("realloc"); }
};

std::string list_trace(const std::string &line, const std::string &list) {
  return "<get_store_phydrives: " + line + "> [get_store_phydrives]" + list + " memory allocation failed\n";
}

TEST_F(DriveLists, AreMadeOnceWhateverIsAnnouncedLater) {
  store(5, {numbered_drive(0)});
  full();
  EXPECT_EQ(number_of_calls("calloc"), 2);
  forget_calls();

  for (const uint32_t announced : {0u, 1u, 6u, 65535u}) {
    store(announced, {numbered_drive(0)});
    full({.growth = {Growth::kMove}});
  }
  EXPECT_EQ(allocations(), 0);
}

// Five drives with their bytes exchanged are 1280 entries.
TEST_F(DriveLists, AreAsLongAsTheAnnouncedNumberWithItsBytesExchanged) {
  store(5, drives_below(5));
  full();
  forget_calls();

  store(drives_below(1280));
  EXPECT_EQ(full({.growth = {Growth::kMove}}).status, 0);
  EXPECT_EQ(allocations(), 0);

  store(drives_below(1281));
  EXPECT_EQ(full({.growth = {Growth::kMove}}).status, 0);
  EXPECT_EQ(number_of_calls("realloc"), 1);
}

TEST_F(DriveLists, TakeMoreDrivesThanTheyWereMadeFor) {
  const std::vector<Drive> drives = drives_below(300);
  store(256, drives);  // one entry
  EXPECT_EQ(full({.growth = {Growth::kMove}}).bytes().slice(kDriveHeaderSize, kDriveSize),
            numbered_drive(0).reported());
  store(256, drives, 2000);
  EXPECT_EQ(delta({.growth = {Growth::kMove}}).length, 0u);
  store(256, {numbered_drive(299)}, 3000);
  EXPECT_EQ(delta({.growth = {Growth::kMove}}).length, drive_reply_size(299));
}

TEST_F(DriveLists, MayBeOfNoEntries) {
  trace_at(9);
  files.write_text("/var/mctool_pddebug", "");
  store(0, {});
  EXPECT_EQ(full().length, 20u);
  EXPECT_EQ(files.read("/var/mctool_pddebug.txt"), "\n cur_list \n\n\n cached_list \n\n\n After cached_list \n\n");
  store(0x10000, {numbered_drive(0)}, 2000);
  EXPECT_EQ(delta({.growth = {Growth::kMove}}).bytes(),
            drive_header(0, 1, kUntouchedAfterGrowth) + numbered_drive(0).reported());
  EXPECT_EQ(trace(), "");
  store(0x10000, {}, 3000);
  EXPECT_EQ(delta({.growth = {Growth::kMove}}).bytes().slice(0, 7), drive_header(0, 1).slice(0, 7));
}

TEST_F(DriveLists, OfNoEntriesNeedNoMemory) {
  store(0, {});

  EXPECT_EQ(full().status, 0);
  EXPECT_EQ(allocations(), 0);
}

TEST_F(DriveLists, StartFromNothingWhenThePlugInIsLoadedAgain) {
  store({numbered_drive(0)});
  full();
  unload();
  load();

  EXPECT_EQ(delta().bytes(), drive_reply(1, {numbered_drive(0)}));
}

// ------------------------------------------------------------------------------------------------------- no memory

TEST_F(DriveLists, WithoutMemoryForTheCurListAreUnavailable) {
  trace_at(3);
  store({numbered_drive(0)});
  fail("calloc", 1, ENOMEM);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), list_trace("1405", "cur_pd_list"));
  EXPECT_EQ(reply.buffer.slice(0, 20), drive_header(1, 0));
  EXPECT_EQ(full().bytes(), drive_reply(1, {numbered_drive(0)}));
}

TEST_F(DriveLists, WithoutMemoryForTheCachedListAreUnavailableBoth) {
  trace_at(3);
  store({numbered_drive(0)});
  fail("calloc", 2, ENOMEM);

  const Reply reply = full();

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), list_trace("1415", "cached_pd_list"));
  forget_calls();
  EXPECT_EQ(full().bytes(), drive_reply(1, {numbered_drive(0)}));
  EXPECT_EQ(number_of_calls("calloc"), 2);
}

TEST_F(DriveLists, ANullListIsAFailureWhateverErrnoSays) {
  store({numbered_drive(0)});
  fail("calloc", 1, 0);

  EXPECT_EQ(full().status, -35);
}

TEST_F(DriveLists, ErrnoAloneIsNoFailure) {
  store({numbered_drive(0)});
  inject("calloc", 1, {.fails = false, .error = ENOMEM});

  EXPECT_EQ(full().status, 0);
}

TEST_F(DriveLists, ThatCannotGrowAreKept) {
  trace_at(3);
  store(256, {numbered_drive(0)});
  full({.growth = {Growth::kMove}});
  store(256, {numbered_drive(1), numbered_drive(2)}, 2000);
  fail("realloc", 1, ENOMEM);

  const Reply reply = delta({.growth = {Growth::kMove}});

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(reply.length, 0u);
  EXPECT_EQ(trace(), list_trace("1405", "cur_pd_list"));
  store(256, {numbered_drive(0)}, 3000);
  EXPECT_EQ(delta({.growth = {Growth::kMove}}).length, 0u);
}

TEST_F(DriveLists, AreComparedWithoutMemoryForLookingDevicesUp) {
  store({numbered_drive(0), numbered_drive(1), numbered_drive(1, 2)});
  full();
  store({numbered_drive(1), numbered_drive(2)}, 2000);
  fail("malloc", 1, ENOMEM);
  fail("malloc", 2, ENOMEM);

  EXPECT_EQ(delta().bytes(),
            drive_header(2, 2) + numbered_drive(2).reported() + gone_drive(numbered_drive(0), untouched_drive_slot()));
}

// ----------------------------------------------------------------------------------------------------------- dumps

TEST_F(DriveLists, AreDumpedBeforeAndAfterTheyAreExchanged) {
  files.write_text("/var/mctool_pddebug", "");
  store({numbered_drive(0), numbered_drive(1)});
  full();
  files.remove("/var/mctool_pddebug.txt");
  store({numbered_drive(2)}, 2000);

  delta();

  EXPECT_EQ(files.read("/var/mctool_pddebug.txt"),
            "\n cur_list \n[SERIAL-2]  \n"
            "\n cached_list \n[SERIAL-0]  [SERIAL-1]  \n"
            "\n After cached_list \n[SERIAL-2]  \n");
}

TEST_F(DriveLists, AreDumpedWithoutARecordDump) {
  files.write_text("/var/mctool_pddebug", "");
  store({numbered_drive(0)});

  full();

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
  EXPECT_TRUE(files.exists("/var/mctool_pddebug.txt"));
}

TEST_F(DriveLists, ARefusedReplyDumpsNothing) {
  files.write_text("/var/mctool_pddebug", "");
  store({numbered_drive(0)});

  full({.size = 10, .growth = {Growth::kRefuse}});

  EXPECT_FALSE(files.exists("/var/mctool_pddebug.txt"));
}

}  // namespace
}  // namespace tests
