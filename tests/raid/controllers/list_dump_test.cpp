#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kListMarker[] = "/var/mctool_ctlrdebug";
constexpr char kListDump[] = "/var/mctool_ctlrdebug.txt";

// ---------------------------------------------------------------------------------------------- the exported function

class ControllerListDump : public ControllerTest {
 protected:
  // Only the indices differ from all that lies between them.
  static std::vector<CtlrSummary> list_of(const std::vector<uint8_t> &indices) {
    std::vector<CtlrSummary> list(indices.size());
    for (size_t i = 0; i < indices.size(); ++i) {
      memset(&list[i], '!', sizeof list[i]);
      list[i].index = indices[i];
    }
    return list;
  }

  void make_marker() {
    files.write_text(kListMarker, "");
    forget_calls();
  }

  void print_list(const std::vector<CtlrSummary> &list, const char *title) {
    print_list(list.data(), static_cast<int32_t>(list.size()), title);
  }
  void print_list(const CtlrSummary *list, int32_t count, const char *title) {
    PLUGIN(print_ctlr_list)(list, count, title);
  }
};

TEST_F(ControllerListDump, ShowsTheTitleAndTheIndices) {
  make_marker();

  print_list(list_of({0, 1, 2}), "cur_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cur_ctlr_list \n[0]  [1]  [2]  \n");
}

TEST_F(ControllerListDump, ShowsIndicesUpTo255InTheOrderOfTheList) {
  make_marker();

  print_list(list_of({255, 7, 128}), "After swap, cached_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n After swap, cached_ctlr_list \n[255]  [7]  [128]  \n");
}

TEST_F(ControllerListDump, ShowsNoMoreThanTheCount) {
  make_marker();

  print_list(list_of({4, 5, 6}).data(), 2, "cached_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cached_ctlr_list \n[4]  [5]  \n");
}

TEST_F(ControllerListDump, OfNoEntriesIsATitleAndANewline) {
  make_marker();

  print_list(list_of({4}).data(), 0, "cur_ctlr_list");

  EXPECT_EQ(files.read(kListDump), "\n cur_ctlr_list \n\n");
}

TEST_F(ControllerListDump, CopiesATitleAsItIs) {
  make_marker();

  print_list(list_of({1}), "100%d %s");

  EXPECT_EQ(files.read(kListDump), "\n 100%d %s \n[1]  \n");
}

TEST_F(ControllerListDump, IsAppendedWhileThereIsAMarker) {
  files.write_text(kListDump, "before");
  make_marker();

  print_list(list_of({1}), "one");
  print_list(list_of({2}), "two");
  files.remove(kListMarker);
  print_list(list_of({3}), "three");

  EXPECT_EQ(files.read(kListDump), "before\n one \n[1]  \n\n two \n[2]  \n");
}

TEST_F(ControllerListDump, OpensAndClosesItsFile) {
  make_marker();

  print_list(list_of({0, 1}), "cur_ctlr_list");

  EXPECT_EQ(calls().at(0), "stat /var/mctool_ctlrdebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_ctlrdebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(ControllerListDump, CostsOneLookWithoutAMarker) {
  print_list(list_of({0}), "cur_ctlr_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_ctlrdebug"));
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(ControllerListDump, WritesNothingWithoutAListOrATitle) {
  make_marker();

  print_list(nullptr, 3, "cur_ctlr_list");
  print_list(list_of({0}), nullptr);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(ControllerListDump, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker();
  trace_at(9);
  fail("fopen", 1, EACCES);

  print_list(list_of({0}), "cur_ctlr_list");

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_ctlrdebug", "fopen /var/mctool_ctlrdebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

// ------------------------------------------------------------------------------------------------ of retrievals

class SummaryListDumps : public ControllerTest {
 protected:
  SummaryListDumps() { files.write_text(kListMarker, ""); }

  std::string dump() {
    std::string text = files.read(kListDump);
    files.remove(kListDump);
    return text;
  }
};

TEST_F(SummaryListDumps, ShowTheCurListThenTheCachedOneThenTheExchange) {
  remember({numbered(3), numbered(5)});
  EXPECT_EQ(dump(),
            "\n cur_ctlr_list \n[3]  [5]  \n\n cached_ctlr_list \n\n\n After swap, cached_ctlr_list \n[3]  [5]  \n");

  store(kReady, {numbered(5)}, 2000);
  delta();
  EXPECT_EQ(dump(),
            "\n cur_ctlr_list \n[5]  \n\n cached_ctlr_list \n[3]  [5]  \n\n After swap, cached_ctlr_list \n[5]  \n");
}

TEST_F(SummaryListDumps, ShowEveryRecordThatWasRead) {
  remember({numbered(0), numbered(1)});
  dump();
  store(kReady, {numbered(0), numbered(1, 2)}, 2000);

  delta();

  EXPECT_THAT(dump(), HasSubstr("\n cur_ctlr_list \n[0]  [1]  \n"));
}

TEST_F(SummaryListDumps, AreEmptyTitlesWhenNoneIsLeft) {
  remember({numbered(0)});
  dump();
  store(kReady, {}, 2000);

  full();

  EXPECT_EQ(dump(), "\n cur_ctlr_list \n\n\n cached_ctlr_list \n[0]  \n\n After swap, cached_ctlr_list \n\n");
}

TEST_F(SummaryListDumps, AreNotThereWhileThereAreNoLists) {
  store(kReady, {});

  full();

  EXPECT_FALSE(files.exists(kListDump));
}

TEST_F(SummaryListDumps, AreNotThereWhenNothingWasCompared) {
  remember({numbered(0)});
  dump();

  delta();

  EXPECT_FALSE(files.exists(kListDump));
}

}  // namespace
}  // namespace tests
