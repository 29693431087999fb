#include "mcstore/source/store_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "host/store_directory.h"
#include "mcstore/source/failure.h"

namespace tests {
namespace {

using mcstore::StoreLock;

class StoreLockTest : public testing::Test {
 protected:
  StoreLockTest() { files.write_text("/lock", ""); }
  ~StoreLockTest() override { close(collector); }

  // As the collector does while it writes.
  void hold_exclusively() {
    collector = open(files.real("/lock").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(collector, LOCK_EX), 0);
  }
  std::string refusal_after(double seconds) {
    try {
      patience.seconds = seconds;
      const StoreLock lock(files.real("/lock"), patience);
    } catch (const mcstore::Unreadable &failure) {
      return failure.what();
    }
    return "(locked)";
  }

  StoreDirectory files;
  mcstore::Patience patience;
  int collector = -1;
};

TEST_F(StoreLockTest, KeepsWritersAwayAsLongAsItLives) {
  {
    const StoreLock lock(files.real("/lock"), patience);
    EXPECT_FALSE(files.is_unlocked("/lock"));
    EXPECT_EQ(refusal_after(0), "(locked)");  // other readers are welcome
  }
  EXPECT_TRUE(files.is_unlocked("/lock"));
}

TEST_F(StoreLockTest, EndsItsPatience) {
  hold_exclusively();
  testing::internal::CaptureStderr();

  EXPECT_EQ(refusal_after(0.1), files.real("/lock") + " stayed locked by another process for 0.1 s");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(StoreLockTest, TellsWhatItWaitsForAfterTwoSeconds) {
  hold_exclusively();
  testing::internal::CaptureStderr();

  refusal_after(2.2);

  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "mcstore: waiting for the lock on " + files.real("/lock") + ", which another process holds\n");
}

TEST_F(StoreLockTest, HasNoPatienceAgainUntilTheLockWasFree) {
  hold_exclusively();
  refusal_after(0.3);

  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(refusal_after(30), "(locked)");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));

  flock(collector, LOCK_UN);
  EXPECT_EQ(refusal_after(30), "(locked)");
  EXPECT_TRUE(patience.given_up.empty());
}

TEST_F(StoreLockTest, IsNoPipe) {
  files.remove("/lock");
  ASSERT_EQ(mkfifo(files.real("/lock").c_str(), 0600), 0);

  EXPECT_EQ(refusal_after(0), files.real("/lock") + ", which is to be locked, is not a file");
}

TEST_F(StoreLockTest, NeedsItsFile) {
  files.remove("/lock");

  EXPECT_THROW(StoreLock(files.real("/lock"), patience), mcstore::Missing);
}

}  // namespace
}  // namespace tests
