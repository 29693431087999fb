// What little the system grants is enough, or the call says that it is not: nothing is kept of it, and the next call is
// as good as ever.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "race/caller.h"
#include "race/follower.h"
#include "race/kinds.h"
#include "race/limit.h"
#include "race/surroundings.h"

namespace tests {
namespace {

// Keeps no lines of the system log: that would need memory.
class FrugalCaller : public Caller {
 public:
  using Caller::Caller;

 private:
  void log(int, const std::string &) override {}
};

class Limited : public testing::TestWithParam<Kind> {
 protected:
  Limited() { files_.write(kind().lock, Bytes().u8(kind().ready)); }

  static const Kind &kind() { return GetParam(); }

  void store(uint32_t number) {
    const Generation now = generation(number);
    files_.write(kind().store, store_file(kind(), now), now.modified());
  }

  // Calls while this resource is limited. What the host needs for it is there before.
  Answer call_with(Limit::Resource resource, rlim_t most, Mode mode) {
    Caller::Call call(caller_, entry_point(kind(), mode), kBufferSize, kBufferSize);
    {
      const Limit limit(resource, most);
      call.make();
    }
    return call.answer();
  }

  void load_again() {
    plugin_.reset();
    plugin_.emplace(PLUGIN_PATH);
  }

  Answer call(Mode mode) { return caller_.call(entry_point(kind(), mode), kBufferSize); }

  void expect_all_to_be_free() {
    EXPECT_TRUE(files_.is_unlocked(kind().lock));
    EXPECT_EQ(open_descriptors(), descriptors_);
  }

  static constexpr uint32_t kBufferSize = 500'000;

  StoreDirectory files_;
  std::optional<host::Plugin> plugin_{PLUGIN_PATH};
  FrugalCaller caller_{*plugin_, files_};
  long descriptors_ = open_descriptors();
};

// --------------------------------------------------------------------------------------------------- few descriptors

// So many of the lowest numbers are taken, and no others.
class NoGapsBelow {
 public:
  NoGapsBelow() {
    do {
      fillers_.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
    } while (fillers_.back() + 1 < open_descriptors() - 1);  // of which one is for looking
  }
  NoGapsBelow(const NoGapsBelow &) = delete;
  NoGapsBelow &operator=(const NoGapsBelow &) = delete;
  ~NoGapsBelow() {
    for (const int filler : fillers_) close(filler);
  }

  rlim_t taken() const { return static_cast<rlim_t>(fillers_.back()) + 1; }

 private:
  std::vector<int> fillers_ = {};
};

using FewDescriptors = Limited;

TEST_P(FewDescriptors, AreEnoughForTheFilesOrEndTheCall) {
  const NoGapsBelow descriptors;
  descriptors_ = open_descriptors();
  const rlim_t needed = strcmp(kind().store, kind().lock) == 0 ? 1 : 2;
  for (const Mode mode : kModes)
    for (rlim_t granted = 0; granted <= 4; ++granted) {
      SCOPED_TRACE(std::to_string(granted) + " descriptors");
      load_again();
      Follower follower(kind());
      store(7);
      follower.follow(Mode::kFull, call(Mode::kFull), 7);

      store(8);
      const Answer answer = call_with(RLIMIT_NOFILE, descriptors.taken() + granted, mode);
      if (granted < needed) {
        EXPECT_EQ(answer.status, -35);
        EXPECT_EQ(answer.length, 0u);
      } else {
        follower.follow(mode, answer, 8);
      }

      expect_all_to_be_free();
      store(9);
      follower.follow(Mode::kDelta, call(Mode::kDelta), 9);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FewDescriptors, testing::ValuesIn(kinds().begin(), kinds().end()), name_of);

// ------------------------------------------------------------------------------------------------------ little memory

// So many that what the plug-in allocates for them comes from the system, not from what malloc has at hand. The low
// byte of the number is 0: drives' lists are as long as the number with its bytes exchanged.
size_t many(const Kind &kind) {
  constexpr size_t kBytes = 125'000;
  return std::max(kBytes / kind.stored({}, 0).size() & ~size_t{255}, size_t{80});
}

// Threads of other tests leave no arenas of their own behind, in which there would be room without asking the system.
const int kIsOneArena = mallopt(M_ARENA_MAX, 1);

// Takes what malloc has at hand without asking the system, as long as this object lives. A few small pieces stay: the
// host needs them for the names of files.
class NothingAtHand {
 public:
  NothingAtHand() {
    constexpr size_t kFew = 4;
    for (size_t size = kSmallest; size <= kLargestToStay; size += kSmallest) {
      void *few[kFew];
      for (void *&piece : few) piece = malloc(size);
      for (void *piece : few) free(piece);
    }
    const Limit nothing_more(RLIMIT_AS, 0);
    for (size_t size = kLargestToTake; size >= kSmallestToTake; size /= 2)
      while (count_ < std::size(pieces_) && (pieces_[count_] = malloc(size))) count_++;
  }
  NothingAtHand(const NothingAtHand &) = delete;
  NothingAtHand &operator=(const NothingAtHand &) = delete;
  ~NothingAtHand() {
    for (void *piece : std::span(pieces_).first(count_)) free(piece);
  }

 private:
  static constexpr size_t kSmallest = 16;
  static constexpr size_t kLargestToStay = 512;
  static constexpr size_t kSmallestToTake = 4096;
  static constexpr size_t kLargestToTake = size_t{1} << 20;

  void *pieces_[1000];
  size_t count_ = 0;
};

class LittleMemory : public Limited {
 protected:
  LittleMemory() { mallopt(M_TOP_PAD, 0); }  // malloc asks the system for no more than it needs

  void store_many() {
    Generation now = {.number = 1};
    for (size_t number = 0; number < many(kind()); ++number) now.devices.push_back({number, 1});
    files_.write(kind().store, store_file(kind(), now), now.modified());
  }
};

TEST_P(LittleMemory, IsEnoughOrEndsTheCall) {
  if (const std::string why = no_limit_on_memory(); !why.empty()) GTEST_SKIP() << why;
  constexpr int kMoreSteps = 5;  // beyond the one that is enough
  const size_t step = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  std::map<int32_t, int> results;
  for (const Mode mode : kModes) {
    store_many();
    load_again();
    const Answer expected = call(mode);
    const Answer expected_next = call(Mode::kFull);
    ASSERT_EQ(expected.status, 0);
    ASSERT_EQ(expected_next.status, 0);

    int enough = 0;
    for (size_t more = 0; enough <= kMoreSteps && !HasFailure(); more += step) {
      SCOPED_TRACE(std::to_string(more) + " bytes");
      load_again();
      Caller::Call limited(caller_, entry_point(kind(), mode), kBufferSize, kBufferSize);
      {
        const NothingAtHand nothing_at_hand;
        const Limit limit(RLIMIT_AS, address_space_in_use() + more);
        limited.make();
      }
      const Answer answer = limited.answer();
      results[answer.status]++;
      if (answer.status == 0) {
        EXPECT_EQ(answer.bytes, expected.bytes);
        enough++;
      } else {
        EXPECT_EQ(answer.length, 0u);
      }

      expect_all_to_be_free();
      EXPECT_EQ(call(Mode::kFull).bytes, expected_next.bytes);
    }
  }
  EXPECT_GT(results.size(), 1u) << "there was enough from the beginning: nothing was tried";
  printf("little memory, %s:", kind().name);
  for (const auto &[status, times] : results) printf(" %d times result %d;", times, status);
  printf("\n");
}

INSTANTIATE_TEST_SUITE_P(Kinds, LittleMemory, testing::ValuesIn(kinds().begin(), kinds().end()), name_of);

}  // namespace
}  // namespace tests
