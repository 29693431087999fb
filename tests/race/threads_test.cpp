// One host with a thread for each kind: one call of a kind at a time, different kinds at once. Under ThreadSanitizer
// this also tells whether kinds share anything that they should not.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>
#include <thread>
#include <vector>

#include "mcserver_storage.h"
#include "race/caller.h"
#include "race/chosen_time.h"
#include "race/kinds.h"
#include "race/surroundings.h"

namespace tests {
namespace {

constexpr char kTraceFile[] = "/trace";
constexpr const char *kMarkers[] = {"/var/mctool_stordebug", "/var/mctool_ctlrdebug", "/var/mctool_pddebug",
                                    "/var/mctool_vddebug", "/var/mctool_bbudebug"};
constexpr char kRecordDump[] = "/var/mctool_stordebug.txt";  // of all RAID kinds
constexpr const char *kListDumps[] = {"/var/mctool_ctlrdebug.txt", "/var/mctool_pddebug.txt", "/var/mctool_vddebug.txt",
                                      "/var/mctool_bbudebug.txt"};

// What a kind's calls gave. Whatever runs beside them, it is the same.
struct Transcript {
  std::vector<Bytes> answers = {};
  std::vector<std::string> system_log = {};

  bool operator==(const Transcript &) const = default;
};

// What all kinds together left behind.
struct Traces {
  std::map<std::string, std::vector<std::string>> lines_of_functions = {};
  std::vector<std::string> list_dumps = {};
  size_t record_dump_size = 0;
};

class Threads : public testing::Test {
 protected:
  void SetUp() override {
    if (const std::string why = no_threads(); !why.empty()) GTEST_SKIP() << why;
    for (const char *marker : kMarkers) files_.write_text(marker, "");
    files_.write_text("/etc/product", "another");  // what is traced without it has no end of line
    for (const Kind &kind : kinds()) files_.write(kind.lock, Bytes().u8(kind.ready));
    outfp = fopen(files_.real(kTraceFile).c_str(), "w");
    mc_debug_level = 9;
  }

  void TearDown() override {
    mc_debug_level = 0;
    if (outfp) fclose(outfp);
    outfp = nullptr;
  }

  // The plug-in starts from zero.
  void load_again() {
    plugin_.reset();
    plugin_.emplace(PLUGIN_PATH);
  }

  // The same calls, whenever they are made, with times of their own: a delta after each write, which changes the state,
  // too, then all, and what is traced.
  Transcript call_again_and_again(const Kind &kind) {
    Caller caller = this->caller();
    Transcript transcript;
    for (uint32_t round = 1; round <= kRounds; ++round) {
      const Bytes file = store_file(kind, generation(round), round % 2 == 0 ? kind.ready : kind.not_ready);
      files_.write(kind.store, file, 100'000'000 * (1 + &kind - kinds().data()) + round * 98'765);
      transcript.answers.push_back(caller.call(kind.delta).bytes);
      transcript.answers.push_back(caller.call(kind.full).bytes);
      caller.call(kind.full, 1, 1);  // which is too small, and stays so
      call_without_a_buffer(kind, caller);
    }
    transcript.system_log = caller.system_log();
    return transcript;
  }

  Traces take_traces() {
    fflush(outfp);
    Traces traces;
    std::istringstream text(files_.read(kTraceFile));
    for (std::string line; std::getline(text, line);)
      traces.lines_of_functions[line.substr(0, line.find(':'))].push_back(line);
    for (const char *dump : kListDumps) traces.list_dumps.push_back(files_.read(dump));
    traces.record_dump_size = files_.read(kRecordDump).size();

    for (const char *dump : kListDumps) files_.remove(dump);
    files_.remove(kRecordDump);
    rewind(outfp);
    EXPECT_EQ(ftruncate(fileno(outfp), 0), 0);
    return traces;
  }

  static constexpr uint32_t kRounds = 50;

  // Which is traced.
  static void call_without_a_buffer(const Kind &kind, Caller &caller) {
    uint32_t length = 0;
    if (kind.renderer)
      caller.call_function<void(const uint8_t *, char *, uint32_t *)>(kind.renderer, nullptr, nullptr, nullptr);
    else
      caller.call_function<host::EntryPoint>(kind.full, nullptr, nullptr, 0u, &length);
  }

  Caller caller() { return Caller(*plugin_, files_); }

 private:
  StoreDirectory files_;
  std::optional<host::Plugin> plugin_{PLUGIN_PATH};
};

// "..., curModTime(1234, Thu Jan  1 00:20:34 1970\n)": how often a line shows a time together with its text. The text
// must be of that time, in UTC.
int times_in(const std::string &line) {
  int times = 0;
  constexpr std::string_view kName = "ModTime(";
  for (size_t at = line.find(kName); at != line.npos; at = line.find(kName, at + 1)) {
    size_t digits = 0;
    const time_t time = std::stoll(line.substr(at + kName.size()), &digits);
    struct tm utc;
    char text[64];
    strftime(text, sizeof text, ", %a %b %e %H:%M:%S %Y\n)", gmtime_r(&time, &utc));
    EXPECT_EQ(line.substr(at + kName.size() + digits, strlen(text)), text) << line;
    times++;
  }
  return times;
}

TEST_F(Threads, OfDifferentKindsAtOnceGetWhatEachGetsAlone) {
  std::vector<Transcript> alone;
  for (const Kind &kind : kinds()) alone.push_back(call_again_and_again(kind));
  const Traces traces_alone = take_traces();

  uint64_t calls = 0;
  uint64_t times = 0;
  size_t lines = 0;
  const ChosenTime time(std::chrono::milliseconds(1000));
  do {
    load_again();
    std::vector<Transcript> together(kinds().size());
    {
      std::vector<std::jthread> threads;
      for (size_t kind = 0; kind < kinds().size(); ++kind)
        threads.emplace_back([&, kind] { together[kind] = call_again_and_again(kinds()[kind]); });
    }
    const Traces traces = take_traces();

    for (size_t kind = 0; kind < kinds().size(); ++kind) {
      EXPECT_EQ(together[kind].answers, alone[kind].answers) << kinds()[kind].name;
      EXPECT_EQ(together[kind].system_log, alone[kind].system_log) << kinds()[kind].name;
      for (const std::string &line : together[kind].system_log) times += static_cast<uint64_t>(times_in(line));
      calls += together[kind].answers.size() * 2;
    }
    for (const auto &[function, its_lines] : traces.lines_of_functions) lines += its_lines.size();
    EXPECT_EQ(traces.lines_of_functions, traces_alone.lines_of_functions);
    EXPECT_EQ(traces.list_dumps, traces_alone.list_dumps);
    EXPECT_EQ(traces.record_dump_size, traces_alone.record_dump_size);
  } while (time.is_left() && !HasFailure());

  printf("threads: %" PRIu64 " calls, %" PRIu64 " times with their texts, %zu trace lines\n", calls, times, lines);
  EXPECT_GE(traces_alone.lines_of_functions.size(), kinds().size());
  EXPECT_GT(traces_alone.record_dump_size, 0u);
  EXPECT_GT(times, 0u);
}

TEST_F(Threads, OfDifferentKindsTraceWholeLines) {
  constexpr int kCalls = 5000;
  for (const Kind &kind : kinds()) {
    Caller caller = this->caller();
    call_without_a_buffer(kind, caller);
  }
  const Traces alone = take_traces();

  {
    std::vector<std::jthread> threads;
    for (const Kind &kind : kinds())
      threads.emplace_back([&] {
        Caller caller = this->caller();
        for (int call = 0; call < kCalls; ++call) call_without_a_buffer(kind, caller);
      });
  }

  const Traces together = take_traces();
  EXPECT_EQ(alone.lines_of_functions.size(), kinds().size());
  EXPECT_EQ(together.lines_of_functions.size(), kinds().size());
  for (const auto &[function, lines] : alone.lines_of_functions)
    EXPECT_EQ(std::ranges::count(together.lines_of_functions.at(function), lines.front()), kCalls) << lines.front();
}

}  // namespace
}  // namespace tests
