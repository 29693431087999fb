// A collector that cares for no lock tears files while they are read. What is reported then is anybody's guess, but it
// is made of records that were read whole, and nothing is lost or kept.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <map>

#include "race/caller.h"
#include "race/chosen_time.h"
#include "race/collector.h"
#include "race/surroundings.h"

namespace tests {
namespace {

constexpr std::array kResults = {0, -13, -35, -37};

size_t occurrences(const std::string &text, const std::string &part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) count++;
  return count;
}

class Lawless : public testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    if (!no_threads().empty()) GTEST_SKIP() << no_threads();
    files_.write(kind().lock, Bytes().u8(kind().ready));
  }

  static const Kind &kind() { return GetParam(); }

  static size_t most_records() { return LawlessCollector::kMostBytes / kind().stored({}, 0).size(); }

  static void expect_whole_records(const Answer &answer) {
    ASSERT_GE(answer.length, kind().reply_header_size);
    const size_t records = (answer.length - kind().reply_header_size) / kind().record_size;
    EXPECT_EQ(answer.length, kind().reply_header_size + records * kind().record_size);
    EXPECT_LE(records, 2 * most_records());  // and as many gone ones
    EXPECT_EQ(answer.bytes[kind().count_offset], records);
  }

  // A full answer tells of no gone device, whose record would keep what the buffer held before.
  static void expect_all_to_be_read(const Answer &answer) {
    if (answer.length == 0) return;
    const uint8_t *const end = answer.bytes.data() + answer.length;
    EXPECT_EQ(std::find(answer.bytes.data() + kind().reply_header_size, end, kUnwritten), end)
        << "a record holds what was not read from the file";
  }

  // A summary, and as many elements as it says. Texts that do not end in time can make it longer than it may be; then
  // it is cut, and its last byte is a NUL.
  static void expect_whole_elements(const Answer &answer) {
    const std::string xml(answer.bytes.data(), answer.bytes.data() + answer.length);
    EXPECT_TRUE(xml.starts_with("<NVME-")) << xml;
    if (xml.ends_with('\0')) return;
    EXPECT_TRUE(xml.ends_with("/>")) << xml;
    const size_t records = occurrences(xml, "/>") - 1;
    EXPECT_LE(records, 2 * most_records());
    EXPECT_EQ(occurrences(xml, " count=\"" + std::to_string(records) + "\" "), 1u) << xml;
  }

  StoreDirectory files_;
  host::Plugin plugin_{PLUGIN_PATH};
};

TEST_P(Lawless, CollectorGetsAnAnswerOrARefusalAndNothingIsKept) {
  constexpr uint64_t kFewestAnswers = 100;  // however slow the machine is
  Caller caller(plugin_, files_);
  std::map<int32_t, uint64_t> results;
  LawlessCollector collector(files_, kind(), 1);
  const auto descriptors = open_descriptors();
  const ChosenTime time(std::chrono::milliseconds(300));

  for (uint64_t call = 0; (time.is_left() || results[0] < kFewestAnswers) && !HasFailure(); ++call) {
    const bool is_full = call % 2 == 0;
    const Answer answer = caller.call(is_full ? kind().full : kind().delta, 1000, 1 << 20);

    results[answer.status]++;
    EXPECT_NE(std::ranges::find(kResults, answer.status), kResults.end()) << answer.status;
    EXPECT_TRUE(answer.status == 0 || answer.length == 0) << answer.length;
    if (answer.length != 0) kind().renderer ? expect_whole_elements(answer) : expect_whole_records(answer);
    if (is_full && !kind().renderer) expect_all_to_be_read(answer);
    EXPECT_TRUE(files_.is_unlocked(kind().lock));
    EXPECT_EQ(open_descriptors(), descriptors);
  }

  printf("lawless collector, %s: %" PRIu64 " changes", kind().name, collector.changes());
  for (const auto &[status, times] : results) printf(", %" PRIu64 " times result %d", times, status);
  printf("\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, Lawless, testing::ValuesIn(kinds().begin(), kinds().end()), name_of);

}  // namespace
}  // namespace tests
