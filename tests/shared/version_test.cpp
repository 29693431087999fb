#include <unistd.h>

#include "host/plugin_test.h"

namespace tests {
namespace {

class Version : public PluginTest {
 protected:
  int verify(const void *a, const void *b) { return PLUGIN(verify_version)(a, b); }
};

TEST_F(Version, IsAlwaysTrue) {
  const int puts_gives = [] {
    testing::internal::CaptureStdout();
    const int result = puts("TRUE");
    testing::internal::GetCapturedStdout();
    return result;
  }();
  testing::internal::CaptureStdout();

  const int result = verify(nullptr, nullptr);

  EXPECT_EQ(testing::internal::GetCapturedStdout(), "TRUE\n");
  EXPECT_EQ(result, puts_gives);
}

TEST_F(Version, DoesNotLookAtItsArguments) {
  const void *const nowhere = reinterpret_cast<const void *>(1);
  testing::internal::CaptureStdout();

  verify(nowhere, nowhere);

  EXPECT_EQ(testing::internal::GetCapturedStdout(), "TRUE\n");
}

TEST_F(Version, ReportsThatItCannotBePrinted) {
  const int real_stdout = dup(STDOUT_FILENO);
  ASSERT_NE(freopen("/dev/full", "w", stdout), nullptr);
  setvbuf(stdout, nullptr, _IONBF, 0);

  const int result = verify("1.0", "2.0");

  dup2(real_stdout, STDOUT_FILENO);
  close(real_stdout);
  clearerr(stdout);
  EXPECT_EQ(result, EOF);
}

}  // namespace
}  // namespace tests
