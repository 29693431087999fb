// Taking the lock.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>

#include "shared/store_lock_test.h"

namespace tests {
namespace {

using testing::ElementsAre;

TEST_F(StoreLock, OpensAndLocksTheLockFileThenLooksAtIt) {
  Taken taken;
  trace_at(9);

  const int32_t status = take(taken);

  EXPECT_EQ(status, 0);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info"));
  EXPECT_EQ(taken.stat.st_size, 9);
  EXPECT_EQ(taken.stat.st_mtime, 1234);
  EXPECT_EQ(taken.fd, fileno(taken.lock_stream));
  EXPECT_EQ(taken.data_stream, nullptr);
  EXPECT_TRUE(is_read_only(taken.lock_stream));
  EXPECT_EQ(content(taken.lock_stream), "lock file");
  EXPECT_FALSE(lock_is_free());
  EXPECT_EQ(trace(), "");
  release(taken);
}

TEST_F(StoreLock, OpensAnotherFileUnderTheSameLock) {
  Taken taken;
  trace_at(9);

  const int32_t status = take(taken, kOtherFile);

  EXPECT_EQ(status, 0);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info",
                                   "stat /var/storphydrive_info", "fopen /var/storphydrive_info"));
  EXPECT_EQ(taken.stat.st_size, 4);
  EXPECT_EQ(taken.stat.st_mtime, 5678);
  EXPECT_EQ(taken.fd, fileno(taken.lock_stream));
  EXPECT_TRUE(is_read_only(taken.data_stream));
  EXPECT_EQ(content(taken.data_stream), "data");
  EXPECT_EQ(content(taken.lock_stream), "lock file");
  EXPECT_FALSE(lock_is_free());
  EXPECT_TRUE(files.is_unlocked(kOtherFile));
  EXPECT_EQ(trace(), "");
  release(taken);
}

TEST_F(StoreLock, TellsATimeAfter2038) {
  files.write(kLockFile, Bytes().text("lock file", 9), 4102444800);
  Taken taken;

  const int32_t status = take(taken);

  EXPECT_EQ(status, 0);
  EXPECT_EQ(taken.stat.st_mtime, 4102444800);
  release(taken);
}

TEST_F(StoreLock, OpensAFileOfOver2GiB) {
  files.resize(kOtherFile, 0x80000005u);
  Taken taken;

  const int32_t status = take(taken, kOtherFile);

  EXPECT_EQ(status, 0);
  EXPECT_EQ(taken.stat.st_size, 0x80000005);
  EXPECT_EQ(fseeko(taken.data_stream, -1, SEEK_END), 0);
  EXPECT_EQ(ftello(taken.data_stream), 0x80000004);
  EXPECT_EQ(content(taken.data_stream), std::string(1, '\0'));
  release(taken);
}

TEST_F(StoreLock, NeedsNoPlaceForADataStreamWithoutAPath) {
  Taken taken;

  const int32_t status = take(&taken.stat, &taken.fd, &taken.lock_stream, nullptr, nullptr);

  EXPECT_EQ(status, 0);
  EXPECT_EQ(taken.stat.st_size, 9);
  release(taken);
}

TEST_F(StoreLock, LeavesAStreamOfTheCallerAloneWhenAllGoesWell) {
  Taken taken{.data_stream = stream_of_the_caller()};
  FILE *const of_the_caller = taken.data_stream;

  const int32_t status = take(taken);

  EXPECT_EQ(status, 0);
  EXPECT_EQ(taken.data_stream, of_the_caller);
  EXPECT_EQ(content(of_the_caller), "data");
  release(taken);
}

TEST_F(StoreLock, IsSharedAmongReaders) {
  Taken first;
  Taken second;

  const int32_t first_status = take(first);
  const int32_t second_status = take(second, kOtherFile);

  EXPECT_EQ(first_status, 0);
  EXPECT_EQ(second_status, 0);
  release(first);
  EXPECT_FALSE(lock_is_free());
  release(second);
  EXPECT_TRUE(lock_is_free());
}

// The writer: holds the lock until a signal comes, and then writes before it lets go. No thread or process of its own,
// which some emulators cannot start.
class Writer {
 public:
  explicit Writer(const std::string &file) {
    fd_ = open(file.c_str(), O_RDWR | O_CLOEXEC);
    has_lock_ = flock(fd_, LOCK_EX) == 0;
    struct sigaction action = {};
    action.sa_handler = write_and_let_go;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
  }
  Writer(const Writer &) = delete;
  Writer &operator=(const Writer &) = delete;
  ~Writer() { close(fd_); }

  static bool has_lock() { return has_lock_ != 0; }

  void let_go_soon() const {
    const struct itimerval in_200_milliseconds = {.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = 200'000}};
    setitimer(ITIMER_REAL, &in_200_milliseconds, nullptr);
  }

 private:
  static void write_and_let_go(int) {
    constexpr char kText[] = "written meanwhile";
    const bool is_written = write(fd_, kText, sizeof kText) == sizeof kText;
    if (is_written) has_lock_ = 0;
    syscall(SYS_flock, fd_, LOCK_UN);
  }

  static inline int fd_;
  static inline volatile sig_atomic_t has_lock_;
};

TEST_F(StoreLock, IsWaitedForWhileAWriterHasIt) {
  const Writer writer(files.real(kLockFile));
  ASSERT_TRUE(writer.has_lock());
  before_call("flock", 1, [&] { writer.let_go_soon(); });
  Taken taken;

  const int32_t status = take(taken);

  EXPECT_EQ(status, 0);
  EXPECT_FALSE(writer.has_lock());
  EXPECT_EQ(taken.stat.st_size, 18);
  release(taken);
}

}  // namespace
}  // namespace tests
