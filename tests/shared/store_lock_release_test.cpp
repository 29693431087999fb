// Letting go of the lock.

#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>

#include "shared/store_lock_test.h"

namespace tests {
namespace {

using testing::ElementsAre;

class StoreLockRelease : public StoreLock {};

TEST_F(StoreLockRelease, IsReleasedAndItsStreamClosed) {
  Taken taken;
  take(taken);
  forget_calls();

  const int result = release(taken);

  EXPECT_EQ(result, 0);
  EXPECT_THAT(calls(), ElementsAre("flock 8", "fclose"));
  EXPECT_FALSE(is_open(taken.fd));
  EXPECT_TRUE(lock_is_free());
}

TEST_F(StoreLockRelease, IsReleasedThenItsStreamIsClosedThenTheOther) {
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
TEST_F(StoreLockRelease, IsReleasedThoughTheFileStaysOpenElsewhere) {
  Taken taken;
  take(taken);
  const int elsewhere = dup(taken.fd);

  release(taken);

  EXPECT_TRUE(lock_is_free());
  close(elsewhere);
}

TEST_F(StoreLockRelease, GivesTheResultOfClosingTheOnlyStream) {
  Taken taken;
  take(taken);
  fail("fclose", 1, EIO);

  EXPECT_EQ(release(taken), EOF);
}

TEST_F(StoreLockRelease, GivesTheResultOfClosingTheDataStream) {
  Taken taken;
  take(taken, kOtherFile);
  fail("fclose", 2, EIO);

  EXPECT_EQ(release(taken), EOF);
}

TEST_F(StoreLockRelease, ForgetsTheResultOfClosingTheFirstOfTwoStreams) {
  Taken taken;
  take(taken, kOtherFile);
  fail("fclose", 1, EIO);
  const int data_fd = fileno(taken.data_stream);

  EXPECT_EQ(release(taken), 0);
  EXPECT_FALSE(is_open(data_fd));
}

TEST_F(StoreLockRelease, IsTracedWhenItCannotBeReleasedAndClosesBothStreams) {
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

TEST_F(StoreLockRelease, IsReleasedWithoutAStream) {
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

}  // namespace
}  // namespace tests
