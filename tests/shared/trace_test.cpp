#include <gmock/gmock.h>
#include <syslog.h>

#include <cerrno>
#include <climits>

#include "host/plugin_test.h"
#include "nvme/nvme_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

static bool is_openlog_called = false;

// Stands in for libc's.
void openlog(const char *, int, int) { is_openlog_called = true; }

namespace tests {
namespace {

using testing::Combine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Matcher;
using testing::Values;

constexpr char kNullBufferLine[] = "<mc_get_store_ctrls: 1093> [mc_get_store_ctrls]buf is NULL\n";
constexpr char kNoProductFileLine[] =
    "<read_product_file: 180> [read_product_file]fopen(/etc/product) failed: errno 2 (No such file or directory)";
constexpr char kNoProductWordLine[] =
    "<running_on_kestrano: 203> [running_on_kestrano]"
    "fscanf on product file gave unexpected value 0: 2 (No such file or directory)";

class Trace : public PluginTest {
 protected:
  int32_t trace_one_line() {
    uint32_t length = 0;
    return PLUGIN(mc_get_store_ctrls)(nullptr, nullptr, 0, &length);
  }
  int trace_two_lines() { return PLUGIN(running_on_kestrano)(); }

  void log_a_line() {
    files.write("/var/storctlr_info", Bytes().u8(2).fill(kControllerSize, 0));
    fail("fread", 2, EIO);
    call("mc_get_store_ctrls");
  }
};

constexpr char kReadErrorLine[] =
    "mcserver_storage.cpp:1054:Error reading file /var/storctlr_info, Input/output error\n";

// ------------------------------------------------------------------------------------------------------ the gate

class TraceAtLevel : public Trace, public testing::WithParamInterface<int32_t> {};
class NoTraceAtLevel : public TraceAtLevel {};

TEST_P(TraceAtLevel, IsWritten) {
  trace_at(GetParam());

  trace_one_line();
  trace_two_lines();

  EXPECT_EQ(trace(), std::string(kNullBufferLine) + kNoProductFileLine + kNoProductWordLine);
}

INSTANTIATE_TEST_SUITE_P(, TraceAtLevel, Values(3, 4, 9, 256, INT32_MAX));

TEST_P(NoTraceAtLevel, IsWritten) {
  trace_at(GetParam());
  fail("fopen", 2, EACCES);

  trace_one_line();
  trace_two_lines();
  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(trace(), "");
}

INSTANTIATE_TEST_SUITE_P(, NoTraceAtLevel, Values(2, 1, 0, -1, INT32_MIN));

class TraceWithCmcLog : public Trace, public testing::WithParamInterface<int32_t> {};

TEST_P(TraceWithCmcLog, IsSuppressedAtEveryLevel) {
  use_cmclog = GetParam();
  trace_at(9);
  fail("fopen", 2, EACCES);

  trace_one_line();
  trace_two_lines();
  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, -35);
  EXPECT_EQ(trace(), "");
}

INSTANTIATE_TEST_SUITE_P(, TraceWithCmcLog, Values(1, -1, 0x100, 0x10000, INT32_MIN));

TEST_F(Trace, IsSuppressedWithoutAStream) {
  trace_at(9);
  outfp = nullptr;

  const int32_t status = trace_one_line();

  EXPECT_EQ(status, -35);
  EXPECT_EQ(trace_two_lines(), 0);
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product"));
}

TEST_F(Trace, AsksForTheLevelAtEverySite) {
  trace_at(3);
  before_call("fflush", 1, [] { mc_debug_level = 2; });

  trace_two_lines();

  EXPECT_EQ(trace(), kNoProductFileLine);
}

TEST_F(Trace, AsksForCmcLogAtEverySite) {
  trace_at(3);
  before_call("fflush", 1, [] { use_cmclog = 1; });

  trace_two_lines();

  EXPECT_EQ(trace(), kNoProductFileLine);
}

TEST_F(Trace, AsksForTheStreamAtEverySite) {
  trace_at(3);
  before_call("fflush", 1, [] { outfp = nullptr; });

  trace_two_lines();

  EXPECT_EQ(trace(), kNoProductFileLine);
}

TEST_F(Trace, StartsWhenItIsSwitchedOnInTheMiddleOfACall) {
  before_call("fopen", 1, [] { mc_debug_level = 3; });

  trace_two_lines();

  EXPECT_EQ(trace(), std::string(kNoProductFileLine) + kNoProductWordLine);
}

// ------------------------------------------------------------------------------------------------------ failures

// A call of libc whose failure is traced, in a call of the plug-in, and the line number that the message has.
struct TracedFailure {
  const char *entry_point;
  const char *libc_function;
  int nth;
  int error;
  int line;
};

void PrintTo(const TracedFailure &failure, std::ostream *out) { *out << failure.entry_point << ": " << failure.line; }

class TraceOfAFailure : public Trace, public testing::WithParamInterface<std::tuple<TracedFailure, int32_t>> {
 protected:
  TraceOfAFailure() {
    files.write("/var/storctlr_info", Bytes().u8(2));
    files.write(kDriveStore, drive_file(1, {Drive()}));
    files.write(kNvmeControllerStore, nvme_controller_file(4, {NvmeController()}));
    files.write(kNvmeDriveStore, nvme_drive_file(4, {NvmeDrive()}));
  }
};

TEST_P(TraceOfAFailure, IsWrittenAboveLevelTwoAlone) {
  const auto &[failure, level] = GetParam();
  trace_at(level);
  fail(failure.libc_function, failure.nth, failure.error);

  call(failure.entry_point);

  const std::string line = ": " + std::to_string(failure.line) + "> [";
  EXPECT_THAT(trace(), level > 2 ? HasSubstr(line) : Matcher<std::string>(""));
}

INSTANTIATE_TEST_SUITE_P(, TraceOfAFailure,
                         Combine(Values(TracedFailure{"mc_get_store_phydrives", "calloc", 1, ENOMEM, 1405},
                                        TracedFailure{"mc_get_store_phydrives", "calloc", 2, ENOMEM, 1415},
                                        TracedFailure{"mc_get_store_phydrives", "fread", 2, EIO, 1495},
                                        TracedFailure{"mc_get_nvme_controller", "realloc", 1, ENOMEM, 687},
                                        TracedFailure{"mc_get_nvme_controller", "realloc", 2, ENOMEM, 698},
                                        TracedFailure{"mc_get_nvme_controller", "realloc", 2, 0, 722},
                                        TracedFailure{"mc_get_nvme_controller", "calloc", 1, ENOMEM, 776},
                                        TracedFailure{"mc_get_nvme_phy_drive", "calloc", 2, ENOMEM, 488},
                                        TracedFailure{"mc_get_nvme_phy_drive", "calloc", 3, ENOMEM, 499}),
                                 Values(3, 2, 0, INT32_MIN)));

TEST_P(NoTraceAtLevel, IsWrittenOfNullArguments) {
  trace_at(GetParam());

  PLUGIN(print_nvme_ctlrinfo)(nullptr, nullptr);
  PLUGIN(print_nvme_pdinfo)(nullptr, nullptr);
  PLUGIN(xmlize_nvme_controller)(nullptr, nullptr, nullptr);
  PLUGIN(xmlize_nvme_phy_drive)(nullptr, nullptr, nullptr);

  EXPECT_EQ(trace(), "");
}

// ------------------------------------------------------------------------------------------------------ the lines

TEST_F(Trace, IsOnePrintAndOneFlushALine) {
  trace_at(3);

  trace_one_line();
  trace_two_lines();

  EXPECT_THAT(calls(),
              ElementsAre("fprintf", "fflush", "fopen /etc/product", "fprintf", "fflush", "fprintf", "fflush"));
}

TEST_F(Trace, OfTheLockIsOnePrintAndOneFlush) {
  trace_at(3);
  fail("fopen", 1, EACCES);

  call("mc_delta_store_ctrls");

  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fprintf", "fflush"));
}

TEST_F(Trace, IsInTheFileAtOnce) {
  trace_at(3);
  FILE *const stream = fopen(files.real("/trace").c_str(), "w");
  outfp = stream;
  std::string before_second_line;
  before_call("fprintf", 2, [&] { before_second_line = files.read("/trace"); });

  trace_two_lines();

  EXPECT_EQ(before_second_line, kNoProductFileLine);
  EXPECT_EQ(files.read("/trace"), std::string(kNoProductFileLine) + kNoProductWordLine);
  fclose(stream);
}

// ------------------------------------------------------------------------------------------------------ the system log

struct TraceSettings {
  int32_t level;
  int32_t cmclog;
  bool has_stream;
};

void PrintTo(const TraceSettings &settings, std::ostream *out) {
  *out << "level " << settings.level << ", cmclog " << settings.cmclog << (settings.has_stream ? "" : ", no stream");
}

class SystemLog : public Trace, public testing::WithParamInterface<TraceSettings> {};

TEST_P(SystemLog, IsWrittenWhateverTheTraceSettings) {
  trace_at(GetParam().level);
  use_cmclog = GetParam().cmclog;
  if (!GetParam().has_stream) outfp = nullptr;

  log_a_line();

  EXPECT_THAT(system_log(), ElementsAre(kReadErrorLine));
}

INSTANTIATE_TEST_SUITE_P(, SystemLog,
                         Values(TraceSettings{0, 0, true}, TraceSettings{9, 0, true}, TraceSettings{9, 1, true},
                                TraceSettings{9, 0, false}, TraceSettings{0, 1, false}));

TEST_F(Trace, LeavesTheSystemLogToTheHostToOpen) {
  log_a_line();

  EXPECT_FALSE(is_openlog_called);
}

// ------------------------------------------------------------------------------------------------------ markers

class MarkerFile : public PluginTest {
 protected:
  void make_directory(const std::string &path) {
    files.write_text(path + "/file", "");
    forget_calls();
  }
};

TEST_F(MarkerFile, OfTheSimulationMayBeADirectory) {
  make_directory("/debug/mctool_storage_debug");

  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.length, 2606u);
}

TEST_F(MarkerFile, OfTheRecordDumpMayBeADirectory) {
  make_directory("/var/mctool_stordebug");
  const StorCtlrInfo record = {};

  PLUGIN(print_ctlrinfo)(&record, nullptr);

  EXPECT_EQ(files.read("/var/mctool_stordebug.txt"), "controller: \nsmbios_pcislotname: \nis-supported: false\n");
}

TEST_F(MarkerFile, OfTheListDumpMayBeADirectory) {
  make_directory("/var/mctool_ctlrdebug");
  const CtlrSummary entry = {};

  PLUGIN(print_ctlr_list)(&entry, 1, "title");

  EXPECT_EQ(files.read("/var/mctool_ctlrdebug.txt"), "\n title \n[0]  \n");
}

// Its content is of no interest.
TEST_F(MarkerFile, IsLookedAtButNotOpened) {
  files.write_text("/debug/mctool_storage_debug", "0");

  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.length, 2606u);
  EXPECT_THAT(calls(), ElementsAre("stat /debug/mctool_storage_debug"));
}

TEST_F(MarkerFile, ThatCannotBeLookedAtIsAbsent) {
  files.write_text("/debug/mctool_storage_debug", "");
  fail("stat", 1, EACCES);

  const Reply reply = call("mc_get_store_ctrls");

  EXPECT_EQ(reply.status, -37);
}

TEST_F(MarkerFile, IsLookedForAtEveryCall) {
  call("mc_get_store_ctrls");
  files.write_text("/debug/mctool_storage_debug", "");
  const Reply with_marker = call("mc_get_store_ctrls");
  files.remove("/debug/mctool_storage_debug");

  const Reply without_marker = call("mc_get_store_ctrls");

  EXPECT_EQ(with_marker.status, 0);
  EXPECT_EQ(without_marker.status, -37);
}

}  // namespace
}  // namespace tests
