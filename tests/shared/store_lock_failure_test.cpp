// Failures to take the lock.

#include <gmock/gmock.h>

#include <cerrno>

#include "shared/store_lock_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
