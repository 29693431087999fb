// Where the dump of a controller goes.

#include <gmock/gmock.h>

#include <cerrno>

#include "raid/controllers/dump_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ControllerDumpFile : public ControllerDump {};

TEST_F(ControllerDumpFile, LeavesTheStreamOpenAndTheDumpFileAlone) {
  make_marker(kRecordMarker);
  FILE *const stream = tmpfile();

  print(full_record().data(), stream);

  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_THAT(calls(), Not(Contains("fclose")));
  EXPECT_THAT(calls(), Not(Contains(HasSubstr("stat"))));
  EXPECT_NE(fputs("more\n", stream), EOF);
  fclose(stream);
}

TEST_F(ControllerDumpFile, CostsOneLookWithoutAMarker) {
  append(full_record());

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug"));
  EXPECT_FALSE(files.exists(kRecordDump));
}

TEST_F(ControllerDumpFile, IsAppendedWhileThereIsAMarker) {
  files.write_text(kRecordDump, "before\n");
  make_marker(kRecordMarker);

  append(full_record());
  append(full_record().put(104, Bytes().u8(0)));
  files.remove(kRecordMarker);
  append(full_record());

  EXPECT_EQ(files.read(kRecordDump), "before\n" + full_controller_text() +
                                         "controller: SLOT-7\nsmbios_pcislotname: PCI-3\nis-supported: false\n");
}

TEST_F(ControllerDumpFile, OpensAndClosesItsFile) {
  make_marker(kRecordMarker);

  append(full_record());

  EXPECT_EQ(calls().at(0), "stat /var/mctool_stordebug");
  EXPECT_EQ(calls().at(1), "fopen /var/mctool_stordebug.txt");
  EXPECT_EQ(number_of_calls("fclose"), 1);
  EXPECT_EQ(calls().back(), "fclose");
}

TEST_F(ControllerDumpFile, WritesNothingOfANullRecord) {
  make_marker(kRecordMarker);
  FILE *const stream = tmpfile();

  print(nullptr, nullptr);
  print(nullptr, stream);

  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_FALSE(files.exists(kRecordDump));
  EXPECT_EQ(ftell(stream), 0);
  fclose(stream);
}

TEST_F(ControllerDumpFile, IsLeftOutSilentlyWhenItsFileCannotBeOpened) {
  make_marker(kRecordMarker);
  trace_at(9);
  fail("fopen", 1, EACCES);

  append(full_record());

  EXPECT_THAT(calls(), ElementsAre("stat /var/mctool_stordebug", "fopen /var/mctool_stordebug.txt"));
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(ControllerDumpFile, ShowsNumbersAsTheyAreInTheFile) {
  make_marker(kRecordMarker);
  files.write(kControllerStore, Bytes().u8(kReady) + full_record());

  full();

  EXPECT_EQ(files.read(kRecordDump), full_controller_text());
}

}  // namespace
}  // namespace tests
