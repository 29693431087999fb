// Signals may arrive at any time. All that they can do is to end the waiting for the collector's lock, and that only
// where their handlers were installed without SA_RESTART.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <ostream>

#include "race/race.h"
#include "race/surroundings.h"

namespace tests {
namespace {

// A timer whose signals this process handles for as long as it lives.
class SignalTimer {
 public:
  SignalTimer(int flags, void (*handler)(int), suseconds_t interval) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(SIGALRM, &action, &previous_);
    const struct itimerval timer = {.it_interval = {.tv_sec = 0, .tv_usec = interval},
                                    .it_value = {.tv_sec = 0, .tv_usec = interval}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }
  SignalTimer(const SignalTimer &) = delete;
  SignalTimer &operator=(const SignalTimer &) = delete;
  ~SignalTimer() {
    const struct itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &previous_, nullptr);
  }

 private:
  struct sigaction previous_;
};

// -------------------------------------------------------------------------------------------------- one who waits

// A collector in the signal handler, for want of a thread: it has the lock of each family until so many signals have
// come.
class SlowCollector {
 public:
  SlowCollector(const StoreDirectory &files, int signals) {
    signals_to_come_ = signals;
    for (size_t i = 0; i < std::size(kLocks); ++i) {
      locks_[i] = open(files.real(kLocks[i]).c_str(), O_RDWR | O_CLOEXEC);
      flock(locks_[i], LOCK_EX);
    }
  }
  SlowCollector(const SlowCollector &) = delete;
  SlowCollector &operator=(const SlowCollector &) = delete;
  ~SlowCollector() {
    for (const int lock : locks_) close(lock);
  }

  static bool has_lock() { return signals_to_come_ > 0; }

  static void on_signal(int) {
    if (signals_to_come_ == 0) return;
    signals_to_come_ = signals_to_come_ - 1;
    if (has_lock()) return;
    for (const int lock : locks_) syscall(SYS_flock, lock, LOCK_UN);
  }

  static constexpr const char *kLocks[] = {"/var/storctlr_info", "/var/nvmectlr_info"};

 private:
  static inline volatile sig_atomic_t signals_to_come_;
  static inline int locks_[std::size(kLocks)];
};

constexpr suseconds_t kTwentyMilliseconds = 20'000;

class WaitingReader : public testing::TestWithParam<Kind> {
 protected:
  WaitingReader() {
    for (const char *lock : SlowCollector::kLocks) files_.write(lock, Bytes().u8(4));
    files_.write(kind().store, store_file(kind(), kNow), kNow.modified());
  }

  void SetUp() override {
    if (!no_prompt_signals().empty()) GTEST_SKIP() << no_prompt_signals();
  }

  static const Kind &kind() { return GetParam(); }

  void expect_all_to_be_free() {
    for (const char *lock : SlowCollector::kLocks) EXPECT_TRUE(files_.is_unlocked(lock)) << lock;
    EXPECT_EQ(open_descriptors(), descriptors_);
  }

  const Generation kNow = generation(7);
  StoreDirectory files_;
  host::Plugin plugin_{PLUGIN_PATH};
  Caller caller_{plugin_, files_};
  const long descriptors_ = open_descriptors();
};

TEST_P(WaitingReader, IsInterruptedBySignalsThatRestartNothing) {
  constexpr int kSignals = 100;
  Answer answer;

  {
    const SlowCollector collector(files_, kSignals);
    const SignalTimer timer(0, SlowCollector::on_signal, kTwentyMilliseconds);
    answer = caller_.call(kind().delta);
    EXPECT_TRUE(SlowCollector::has_lock()) << "the call waited on, or tried again";
  }

  EXPECT_EQ(answer.status, -35);
  EXPECT_EQ(answer.length, 0u);
  expect_all_to_be_free();
  // The call has come to nothing, and changed nothing.
  const Answer next = caller_.call(kind().delta);
  EXPECT_EQ(next.status, 0);
  EXPECT_EQ(next.bytes, kind().answer(everything(kNow), next.bytes));
}

TEST_P(WaitingReader, WaitsOnAfterSignalsThatRestartWhatTheyInterrupt) {
  constexpr int kSignals = 4;
  Answer answer;

  {
    const SlowCollector collector(files_, kSignals);
    const SignalTimer timer(SA_RESTART, SlowCollector::on_signal, kTwentyMilliseconds);
    answer = caller_.call(kind().delta);
    EXPECT_FALSE(SlowCollector::has_lock()) << "the call did not wait";
  }

  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.bytes, kind().answer(everything(kNow), answer.bytes));
  expect_all_to_be_free();
}

INSTANTIATE_TEST_SUITE_P(Kinds, WaitingReader, testing::ValuesIn(kinds().begin(), kinds().end()), name_of);

// ------------------------------------------------------------------------------------------------------- all the time

struct Storm {
  const char *name;
  int flags;
};

void PrintTo(const Storm &storm, std::ostream *out) { *out << storm.name; }

class SignalStorm : public testing::TestWithParam<Storm> {
 protected:
  void SetUp() override {
    if (!no_threads().empty()) GTEST_SKIP() << no_threads();
    if (!no_prompt_signals().empty()) GTEST_SKIP() << no_prompt_signals();
  }

  static inline volatile sig_atomic_t signals_;
  static void on_signal(int) { signals_ = signals_ + 1; }
};

// While this object lives, threads that are started leave the timer's signals to the others.
class SignalsBlocked {
 public:
  SignalsBlocked() { change(SIG_BLOCK); }
  SignalsBlocked(const SignalsBlocked &) = delete;
  SignalsBlocked &operator=(const SignalsBlocked &) = delete;
  ~SignalsBlocked() { change(SIG_UNBLOCK); }

 private:
  static void change(int how) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGALRM);
    pthread_sigmask(how, &signals, nullptr);
  }
};

TEST_P(SignalStorm, EndsAtMostTheWaitingForTheLock) {
  constexpr suseconds_t kInterval = 250;
  const bool restarts = GetParam().flags == SA_RESTART;
  std::optional<SignalsBlocked> in_the_collectors(std::in_place);
  Race race;
  in_the_collectors.reset();
  signals_ = 0;

  {
    const ChosenTime time(std::chrono::milliseconds(1000));
    const SignalTimer timer(GetParam().flags, on_signal, kInterval);
    // Without an interrupted call, nothing would have been tried.
    const auto is_tried = [&] { return race.has_shown_enough() && (restarts || race.refused() > 0); };
    for (int round = 0; (time.is_left() || !is_tried()) && !HasFailure(); ++round)
      for (InventoryReader &reader : race.readers()) reader.call(round % 4 == 0 ? Mode::kFull : Mode::kDelta);
  }

  race.finish(GetParam().name);
  printf("%s: %d signals\n", GetParam().name, static_cast<int>(signals_));
  EXPECT_TRUE(!restarts || race.refused() == 0);
}

INSTANTIATE_TEST_SUITE_P(Handlers, SignalStorm,
                         testing::Values(Storm{"signals with SA_RESTART", SA_RESTART},
                                         Storm{"signals without SA_RESTART", 0}),
                         [](const auto &storm) { return storm.param.flags == 0 ? "RestartNothing" : "Restart"; });

}  // namespace
}  // namespace tests
