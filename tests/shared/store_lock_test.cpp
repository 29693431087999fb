#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <iterator>

#include "host/plugin_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kLockFile[] = "/var/storctlr_info";
constexpr char kOtherFile[] = "/var/storphydrive_info";

bool is_open(int fd) { return fcntl(fd, F_GETFD) != -1; }
bool is_read_only(FILE *stream) { return (fcntl(fileno(stream), F_GETFL) & O_ACCMODE) == O_RDONLY; }

std::string content(FILE *stream) {
  char text[64];
  return {text, fread(text, 1, sizeof text, stream)};
}

auto open_descriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

class StoreLock : public PluginTest {
 protected:
  // What the plug-in gives out, with values that it would not give.
  struct Taken {
    struct stat stat = {};
    int32_t fd = -7;
    FILE *lock_stream = stdin;
    FILE *data_stream = nullptr;
  };

  StoreLock() {
    files.write(kLockFile, Bytes().text("lock file", 9), 1234);
    files.write(kOtherFile, Bytes().text("data", 4), 5678);
  }

  int32_t take(Taken &taken, const char *path = nullptr) {
    return take(&taken.stat, &taken.fd, &taken.lock_stream, &taken.data_stream, path);
  }
  int32_t take(struct stat *stat_out, int32_t *fd_out, FILE **lock_stream_out, FILE **data_stream_out,
               const char *path) {
    return PLUGIN(getlock_and_open_file)(stat_out, fd_out, lock_stream_out, data_stream_out, path);
  }

  int release(const Taken &taken) { return release(taken.fd, taken.lock_stream, taken.data_stream); }
  int release(int32_t fd, FILE *lock_stream, FILE *data_stream) {
    return PLUGIN(unlock_and_close_file)(fd, lock_stream, data_stream);
  }

  bool lock_is_free() const { return files.is_unlocked(kLockFile); }

  // A stream that the caller left in the location of the data stream.
  FILE *stream_of_the_caller() { return fopen(files.real(kOtherFile).c_str(), "rb"); }
};

// ------------------------------------------------------------------------------------------------------ taking

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

// ------------------------------------------------------------------------------------------------------ releasing

TEST_F(StoreLock, IsReleasedAndItsStreamClosed) {
  Taken taken;
  take(taken);
  forget_calls();

  const int result = release(taken);

  EXPECT_EQ(result, 0);
  EXPECT_THAT(calls(), ElementsAre("flock 8", "fclose"));
  EXPECT_FALSE(is_open(taken.fd));
  EXPECT_TRUE(lock_is_free());
}

TEST_F(StoreLock, IsReleasedThenItsStreamIsClosedThenTheOther) {
  Taken taken;
  take(taken, kOtherFile);
  const int data_fd = fileno(taken.data_stream);
  bool only_data_is_open = false;
  before_call("fclose", 2, [&] { only_data_is_open = !is_open(taken.fd) && is_open(data_fd); });
  forget_calls();

  const int result = release(taken);

  EXPECT_EQ(result, 0);
  EXPECT_THAT(calls(), ElementsAre("flock 8", "fclose", "fclose"));
  EXPECT_TRUE(only_data_is_open);
  EXPECT_FALSE(is_open(data_fd));
  EXPECT_TRUE(lock_is_free());
}

// Closing alone would not: someone else may hold the same open file.
TEST_F(StoreLock, IsReleasedThoughTheFileStaysOpenElsewhere) {
  Taken taken;
  take(taken);
  const int elsewhere = dup(taken.fd);

  release(taken);

  EXPECT_TRUE(lock_is_free());
  close(elsewhere);
}

TEST_F(StoreLock, GivesTheResultOfClosingTheOnlyStream) {
  Taken taken;
  take(taken);
  fail("fclose", 1, EIO);

  EXPECT_EQ(release(taken), EOF);
}

TEST_F(StoreLock, GivesTheResultOfClosingTheDataStream) {
  Taken taken;
  take(taken, kOtherFile);
  fail("fclose", 2, EIO);

  EXPECT_EQ(release(taken), EOF);
}

TEST_F(StoreLock, ForgetsTheResultOfClosingTheFirstOfTwoStreams) {
  Taken taken;
  take(taken, kOtherFile);
  fail("fclose", 1, EIO);
  const int data_fd = fileno(taken.data_stream);

  EXPECT_EQ(release(taken), 0);
  EXPECT_FALSE(is_open(data_fd));
}

TEST_F(StoreLock, IsTracedWhenItCannotBeReleasedAndClosesBothStreams) {
  Taken taken;
  take(taken, kOtherFile);
  const int data_fd = fileno(taken.data_stream);
  trace_at(3);
  fail("flock", 1, ENOLCK);
  forget_calls();

  const int result = release(taken);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(trace(),
            "<unlock_and_close_file: 101> [unlock_and_close_file]"
            "Failed to UnLock File /var/storctlr_info, No locks available\n");
  EXPECT_THAT(calls(), ElementsAre("flock 8", "fprintf", "fflush", "fclose", "fclose"));
  EXPECT_FALSE(is_open(taken.fd));
  EXPECT_FALSE(is_open(data_fd));
}

TEST_F(StoreLock, IsReleasedWithoutAStream) {
  FILE *const data_stream = stream_of_the_caller();
  const int data_fd = fileno(data_stream);
  trace_at(3);

  const int result = release(-1, nullptr, data_stream);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(trace(),
            "<unlock_and_close_file: 101> [unlock_and_close_file]"
            "Failed to UnLock File /var/storctlr_info, Bad file descriptor\n");
  EXPECT_FALSE(is_open(data_fd));
}

// ------------------------------------------------------------------------------------------------------ failures

class StoreLockFailure : public StoreLock {
 protected:
  // Every failure leaves as many descriptors open as there were, and the lock free.
  void expect(int32_t expected_status, const std::string &expected_trace, const char *path = nullptr) {
    trace_at(3);
    const auto descriptors = open_descriptors();

    const int32_t status = take(taken, path);

    EXPECT_EQ(status, expected_status);
    EXPECT_EQ(trace(), expected_trace);
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_TRUE(lock_is_free());
  }

  // A stream that the caller has left there, and that is closed with the others.
  void expect_caller_stream_closed(const char *path) {
    taken.data_stream = stream_of_the_caller();
    const int fd = fileno(taken.data_stream);

    EXPECT_EQ(take(taken, path), -37);
    EXPECT_FALSE(is_open(fd));
  }

  Taken taken;
};

TEST_F(StoreLockFailure, OfAMissingFileLeavesNoTrace) {
  files.remove(kLockFile);

  expect(-37, "");
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info"));
  EXPECT_EQ(taken.lock_stream, nullptr);
  EXPECT_EQ(taken.fd, -7);
}

TEST_F(StoreLockFailure, OfAMissingFileComesBeforeTheOtherFile) {
  files.remove(kLockFile);

  expect(-37, "", kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info"));
}

TEST_F(StoreLockFailure, OfAnUnreadableFileIsTraced) {
  fail("fopen", 1, EACCES);

  expect(-35, "<getlock_and_open_file: 125> [getlock_and_open_file]/var/storctlr_info Open failed Permission denied\n");
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fprintf", "fflush"));
  EXPECT_EQ(taken.lock_stream, nullptr);
}

// The file is missing only if this very call says so.
TEST_F(StoreLockFailure, WithoutAReasonIsNotTakenForAMissingFile) {
  inject("fopen", 1, {.fails = true, .error = 0});
  errno = ENOENT;

  expect(-35, "<getlock_and_open_file: 125> [getlock_and_open_file]/var/storctlr_info Open failed Success\n");
}

TEST_F(StoreLockFailure, OfTheDescriptorClosesTheStream) {
  fail("fileno", 1, EBADF);

  expect(-35,
         "<getlock_and_open_file: 132> [getlock_and_open_file]"
         "Failed to get file descriptor for /var/storctlr_info, Bad file descriptor\n",
         kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "fprintf", "fflush", "fclose"));
  EXPECT_EQ(taken.fd, -1);
}

TEST_F(StoreLockFailure, OfTheLockIsNotTriedAgainAndNotUnlocked) {
  fail("flock", 1, EINTR);

  expect(-35,
         "<getlock_and_open_file: 139> [getlock_and_open_file]"
         "Failed to lock File /var/storctlr_info, Interrupted system call\n",
         kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "fprintf", "fflush", "fclose"));
}

TEST_F(StoreLockFailure, ToLookAtTheLockFileUnlocksIt) {
  fail("stat", 1, EIO);

  expect(-37, "", kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info",
                                   "flock 8", "fclose"));
}

TEST_F(StoreLockFailure, ToLookAtTheLockFileNeedsNoPlaceForADataStream) {
  fail("stat", 1, EIO);

  const int32_t status = take(&taken.stat, &taken.fd, &taken.lock_stream, nullptr, nullptr);

  EXPECT_EQ(status, -37);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info",
                                   "flock 8", "fclose"));
  EXPECT_TRUE(lock_is_free());
}

TEST_F(StoreLockFailure, ToLookAtTheLockFileClosesTheStreamThatTheCallerLeft) {
  fail("stat", 1, EIO);

  expect_caller_stream_closed(nullptr);
}

TEST_F(StoreLockFailure, OfAMissingOtherFileUnlocks) {
  files.remove(kOtherFile);

  expect(-37, "", kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info",
                                   "stat /var/storphydrive_info", "flock 8", "fclose"));
  EXPECT_EQ(taken.data_stream, nullptr);
}

TEST_F(StoreLockFailure, ToLookAtTheOtherFileClosesTheStreamThatTheCallerLeft) {
  fail("stat", 2, EACCES);

  expect_caller_stream_closed(kOtherFile);
}

TEST_F(StoreLockFailure, ToOpenTheOtherFileNamesItAndUnlocks) {
  fail("fopen", 2, EMFILE);

  expect(-35,
         "<getlock_and_open_file: 168> [getlock_and_open_file]"
         "/var/storphydrive_info Open failed Too many open files\n",
         kOtherFile);
  EXPECT_THAT(calls(), ElementsAre("fopen /var/storctlr_info", "fileno", "flock 1", "stat /var/storctlr_info",
                                   "stat /var/storphydrive_info", "fopen /var/storphydrive_info", "fprintf", "fflush",
                                   "flock 8", "fclose"));
  EXPECT_EQ(taken.data_stream, nullptr);
}

TEST_F(StoreLockFailure, OfAnOtherFileThatVanishesIsTraced) {
  before_call("fopen", 2, [&] { files.remove(kOtherFile); });

  expect(-35,
         "<getlock_and_open_file: 168> [getlock_and_open_file]"
         "/var/storphydrive_info Open failed No such file or directory\n",
         kOtherFile);
}

TEST_F(StoreLockFailure, ToUnlockAfterAnotherOneClosesAllTheSame) {
  fail("stat", 1, EIO);
  fail("flock", 2, ENOLCK);

  expect(-37,
         "<unlock_and_close_file: 101> [unlock_and_close_file]"
         "Failed to UnLock File /var/storctlr_info, No locks available\n");
}

// ------------------------------------------------------------------------------------------------------ null arguments

class StoreLockArguments : public StoreLock {
 protected:
  void expect_refused(int32_t status) {
    EXPECT_EQ(status, -35);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(trace(), "");
    EXPECT_EQ(taken.stat.st_size, 0);
    EXPECT_EQ(taken.fd, -7);
    EXPECT_EQ(taken.lock_stream, stdin);
    EXPECT_EQ(taken.data_stream, nullptr);
  }

  Taken taken;
};

TEST_F(StoreLockArguments, WithoutAPlaceForTheStatAreRefused) {
  trace_at(9);

  expect_refused(take(nullptr, &taken.fd, &taken.lock_stream, &taken.data_stream, kOtherFile));
}

TEST_F(StoreLockArguments, WithoutAPlaceForTheDescriptorAreRefused) {
  trace_at(9);

  expect_refused(take(&taken.stat, nullptr, &taken.lock_stream, &taken.data_stream, kOtherFile));
}

TEST_F(StoreLockArguments, WithoutAPlaceForTheLockStreamAreRefused) {
  trace_at(9);

  expect_refused(take(&taken.stat, &taken.fd, nullptr, &taken.data_stream, kOtherFile));
}

// The place is missed only when there is a stream to put there.
TEST_F(StoreLockArguments, WithoutAPlaceForTheDataStreamAreRefusedAndNothingStaysOpen) {
  trace_at(9);
  const auto descriptors = open_descriptors();

  const int32_t status = take(&taken.stat, &taken.fd, &taken.lock_stream, nullptr, kOtherFile);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(trace(), "");
  EXPECT_EQ(open_descriptors(), descriptors);
  EXPECT_TRUE(lock_is_free());
}

TEST_F(StoreLockArguments, WithoutAPlaceForTheDataStreamAreFineForAFileThatIsMissing) {
  files.remove(kOtherFile);
  const auto descriptors = open_descriptors();

  const int32_t status = take(&taken.stat, &taken.fd, &taken.lock_stream, nullptr, kOtherFile);

  EXPECT_EQ(status, -37);
  EXPECT_EQ(open_descriptors(), descriptors);
  EXPECT_TRUE(lock_is_free());
}

}  // namespace
}  // namespace tests
