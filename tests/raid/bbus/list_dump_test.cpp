#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "raid/bbus/bbu_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kListMarker[] = "/var/mctool_bbudebug";
constexpr char kListDump[] = "/var/mctool_bbudebug.txt";

// Only the controllers differ from all that lies between them.
std::vector<BbuSummary> list_of(const std::vector<uint8_t> &controllers) {
  std::vector<BbuSummary> list(controllers.size());
  for (size_t i = 0; i < controllers.size(); ++i) {
    memset(&list[i], '!', sizeof list[i]);
    list[i].controller_index = controllers[i];
  }
  return list;
}

class BbuListDump : public BbuTest {
 protected:
  void print(const std::vector<BbuSummary> &list, const char *title) {
    print(list.data(), static_cast<int32_t>(list.size()), title);
  }
  void print(const BbuSummary *list, int32_t count, const char *title) { PLUGIN(print_bbu_list)(list, count, title); }

  void make_marker() {
    files.write_text(kListMarker, "");
    forget_calls();
  }

  std::string dump() {
    std::string text = files.read(kListDump);
    files.remove(kListDump);
    return text;
  }
};

// ------------------------------------------------------------------------------------------------------ one list

TEST_F(BbuListDump, ShowsTheTitleAndTheControllers) {
  make_marker();

  print(list_of({0, 255, 7, 128}), "cur_bbu_list");

  EXPECT_EQ(dump(), "\n cur_bbu_list \n[0]  [255]  [7]  [128]  \n");
}

TEST_F(BbuListDump, ShowsNoMoreThanTheCount) {
  make_marker();

  print(list_of({4, 5, 6}).data(), 2, "cur_bbu_list");

  EXPECT_EQ(dump(), "\n cur_bbu_list \n[4]  [5]  \n");
}

TEST_F(BbuListDump, OfNoEntriesIsATitleAndANewline) {
  make_marker();

  print(list_of({4}).data(), 0, "cur_bbu_list");

  EXPECT_EQ(dump(), "\n cur_bbu_list \n\n");
}

TEST_F(BbuListDump, CopiesATitleAsItIs) {
  make_marker();

  print(list_of({1}), "100%d %s");

  EXPECT_EQ(dump(), "\n 100%d %s \n[1]  \n");
}

TEST_F(BbuListDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kListDump, "before");
  make_marker();

  print(list_of({1}), "one");
  print(list_of({2}), "two");
  files.remove(kListMarker);
  print(list_of({3}), "three");

  EXPECT_EQ(dump(), "before\n one \n[1]  \n\n two \n[2]  \n");
}

TEST_F(BbuListDump, OpensAndClosesItsFile) {
  make_marker();

  print(list_of({0, 1}), "cur_bbu_list");

  EXPECT_EQ(calls().at(0), "stat /var/mctool_bbudebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_bbudebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(BbuListDump, CostsOneLookWithoutAMarker) {
  print(list_of({0}), "cur_bbu_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_bbudebug"));
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(BbuListDump, WritesNothingWithoutAListOrATitle) {
  make_marker();

  print(nullptr, 3, "cur_bbu_list");
  print(list_of({0}), nullptr);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(BbuListDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker();
  trace_at(9);
  fail("fopen", 1, EACCES);

  print(list_of({0}), "cur_bbu_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_bbudebug", "fopen /var/mctool_bbudebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// ------------------------------------------------------------------------------------------------------ of retrievals

TEST_F(BbuListDump, ShowsTheCurListAndThenTheSameOneAfterTheExchange) {
  make_marker();
  store({bbu_of(3), bbu_of(5)});

  full();

  EXPECT_EQ(dump(), "\n cur_bbu_list \n[3]  [5]  \n\n After swap, cached_BBU_list \n[3]  [5]  \n");
}

TEST_F(BbuListDump, ShowsEveryRecordThatWasReadBeItReportedOrNot) {
  make_marker();
  remember({bbu_of(3), bbu_of(5)});
  dump();
  store({bbu_of(5), bbu_of(6)}, 2000);

  delta();

  EXPECT_EQ(dump(), "\n cur_bbu_list \n[5]  [6]  \n\n After swap, cached_BBU_list \n[5]  [6]  \n");
}

TEST_F(BbuListDump, IsEmptyTitlesWhenNoneIsLeft) {
  make_marker();
  remember({bbu_of(0)});
  dump();
  store({}, 2000);

  full();

  EXPECT_EQ(dump(), "\n cur_bbu_list \n\n\n After swap, cached_BBU_list \n\n");
}

TEST_F(BbuListDump, IsNotThereWhileThereAreNoLists) {
  make_marker();
  store({});

  full();

  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(BbuListDump, IsNotThereWhenNothingWasCompared) {
  make_marker();
  remember({bbu_of(0)});
  dump();

  delta();

  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(BbuListDump, HasAMarkerOfItsOwn) {
  store({bbu_of(1)});
  make_marker();
  files.write_text("/var/mctool_pddebug", "");
  files.write_text("/var/mctool_ctlrdebug", "");

  full();

  EXPECT_TRUE(files.exists(kListDump));
  for (const char *other : {"/var/mctool_stordebug.txt", "/var/mctool_pddebug.txt", "/var/mctool_ctlrdebug.txt"})
    EXPECT_FALSE(files.exists(other)) << other;
}

}  // namespace
}  // namespace tests
