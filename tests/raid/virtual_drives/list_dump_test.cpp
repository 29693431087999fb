#include <gmock/gmock.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "raid/virtual_drives/virtual_drive_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

constexpr char kListMarker[] = "/var/mctool_vddebug";
constexpr char kListDump[] = "/var/mctool_vddebug.txt";

class VirtualDriveListDump : public VirtualDriveTest {
 protected:
  std::string dump(const std::vector<VdSummary> &list, int32_t count, const char *label) {
    PLUGIN(print_vd_list)(list.data(), count, label);
    return take_dump();
  }

  std::string take_dump() {
    std::string text = files.read(kListDump);
    files.remove(kListDump);
    return text;
  }

  void make_marker() {
    files.write_text(kListMarker, "");
    forget_calls();
  }
};

TEST_F(VirtualDriveListDump, HasALineForEachEntry) {
  make_marker();

  EXPECT_EQ(dump({{1, 2, "G", "name", 3}, {4, 5, "", "", 0xFFFFFFFE}, {6, 7, "H", "other", 8}}, 2, "some label"),
            "\n some label \n[name]-[G] mod_timestamp=3\n[]-[] mod_timestamp=-2\n");
}

class ListOfNoVirtualDrives : public VirtualDriveListDump, public testing::WithParamInterface<int32_t> {};

TEST_P(ListOfNoVirtualDrives, IsALabel) {
  make_marker();

  EXPECT_EQ(dump({{1, 2, "G", "name", 3}}, GetParam(), "label"), "\n label \n");
}

INSTANTIATE_TEST_SUITE_P(, ListOfNoVirtualDrives, Values(0, -1, INT32_MIN));

TEST_F(VirtualDriveListDump, CopiesALabelAsItIs) {
  make_marker();

  EXPECT_EQ(dump({{}}, 0, "100%d %s"), "\n 100%d %s \n");
}

TEST_F(VirtualDriveListDump, AGuidRunsIntoTheNameAndANameEndsAtTheGap) {
  make_marker();
  std::vector<VdSummary> list(1);
  memset(list[0].guid, 'G', sizeof list[0].guid);
  memset(list[0].name, 'N', sizeof list[0].name);

  EXPECT_EQ(dump(list, 1, "label"), "\n label \n[" + std::string(16, 'N') + "]-[" + std::string(33, 'G') +
                                        std::string(16, 'N') + "] mod_timestamp=0\n");
}

TEST_F(VirtualDriveListDump, ATextEndsWithItsEntry) {
  make_marker();
  std::vector<VdSummary> list(2);
  memset(list.data(), 'x', 2 * sizeof list[0]);  // the gaps, too

  EXPECT_EQ(dump(list, 1, "label"),
            "\n label \n[" + std::string(21, 'x') + "]-[" + std::string(54, 'x') + "] mod_timestamp=2021161080\n");
}

TEST_F(VirtualDriveListDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kListDump, "before");
  const std::vector<VdSummary> list(1);
  PLUGIN(print_vd_list)(list.data(), 0, "zero");
  make_marker();
  PLUGIN(print_vd_list)(list.data(), 0, "one");
  PLUGIN(print_vd_list)(list.data(), 0, "two");

  EXPECT_EQ(take_dump(), "before\n one \n\n two \n");
}

TEST_F(VirtualDriveListDump, NeedsAListAndALabel) {
  make_marker();

  EXPECT_EQ(dump({{}}, 1, nullptr), "");
  PLUGIN(print_vd_list)(nullptr, 0, "label");

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(VirtualDriveListDump, HasAMarkerOfItsOwn) {
  for (const char *other : {"/var/mctool_stordebug", "/var/mctool_pddebug", "/var/mctool_ctlrdebug"})
    files.write_text(other, "");
  forget_calls();

  EXPECT_EQ(dump({{}}, 1, "label"), "");
  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_vddebug"));
}

TEST_F(VirtualDriveListDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker();
  trace_at(9);
  fail("fopen", 1, EACCES);

  EXPECT_EQ(dump({{}}, 1, "label"), "");
  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_vddebug", "fopen /var/mctool_vddebug.txt"));
  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------ of retrievals

const std::string kCachedBefore = "\n cached_VD_list before computing deleted drives. \n";
const std::string kCurBefore = "\n cur_VD_list before computing deleted drives. \n";
const std::string kCurAfter = "\n cur_VD_list \n";
const std::string kCachedAfter = "\n After swap, cached_VD_list \n";

TEST_F(VirtualDriveListDump, ShowsBothListsBeforeAndAfterTheyAreExchanged) {
  remember({volume(0), volume(1)});
  make_marker();
  store({volume(2, 0x01020304)}, 2000);
  const std::string known = "[volume-0]-[GUID-0] mod_timestamp=16777217\n[volume-1]-[GUID-1] mod_timestamp=16777217\n";
  const std::string read = "[volume-2]-[GUID-2] mod_timestamp=16909060\n";

  delta();

  EXPECT_EQ(take_dump(), kCachedBefore + known + kCurBefore + read + kCurAfter + read + kCachedAfter + read);
}

TEST_F(VirtualDriveListDump, IsTheSameForAFullCall) {
  make_marker();
  store({volume(0, 2)});
  const std::string read = "[volume-0]-[GUID-0] mod_timestamp=2\n";

  full();

  EXPECT_EQ(take_dump(), kCachedBefore + kCurBefore + read + kCurAfter + read + kCachedAfter + read);
}

TEST_F(VirtualDriveListDump, ShowsTheWholeWidthOfTheTexts) {
  make_marker();
  store({{.guid = std::string(33, 'G'), .name = std::string(16, 'N')}});

  full();

  const std::string name(16, 'N');
  const std::string read = "[" + name + "]-[" + std::string(33, 'G') + name + "] mod_timestamp=16777217\n";
  EXPECT_EQ(take_dump(), kCachedBefore + kCurBefore + read + kCurAfter + read + kCachedAfter + read);
}

TEST_F(VirtualDriveListDump, IsLabelsWhenNoneIsLeft) {
  remember({volume(0)});
  make_marker();
  store({}, 2000);

  full();

  EXPECT_EQ(take_dump(),
            kCachedBefore + "[volume-0]-[GUID-0] mod_timestamp=16777217\n" + kCurBefore + kCurAfter + kCachedAfter);
}

TEST_F(VirtualDriveListDump, IsNotThereWhileThereAreNoLists) {
  make_marker();
  store({});

  full();

  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(VirtualDriveListDump, IsNotThereWhenNothingWasCompared) {
  remember({volume(0)});
  make_marker();

  delta();

  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(VirtualDriveListDump, EndsWhereAReplyIsRefused) {
  make_marker();
  store({volume(0)});

  full({.size = 17, .growth = {Growth::kRefuse}});

  EXPECT_EQ(take_dump(), kCachedBefore + kCurBefore + "[volume-0]-[GUID-0] mod_timestamp=16777217\n");
}

TEST_F(VirtualDriveListDump, IsMadeWithoutARecordDump) {
  make_marker();
  store({volume(0)});

  full();

  EXPECT_FALSE(files.exists("/var/mctool_stordebug.txt"));
}

}  // namespace
}  // namespace tests
