#include <gmock/gmock.h>

#include <cerrno>

#include "raid/controllers/controller_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Values;

constexpr char kProductFile[] = "/etc/product";

class ControllersAndPlatform : public ControllerTest {};

class ControllersOnPlatform : public ControllersAndPlatform, public testing::WithParamInterface<const char *> {};

TEST_P(ControllersOnPlatform, AreNotReadyWhileThereAreNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});

  EXPECT_EQ(full().bytes(), controller_header(kNotReady, 0));
}

TEST_P(ControllersOnPlatform, AreNotReadyInADeltaWhileThereAreNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});

  EXPECT_EQ(delta().bytes(), controller_header(kNotReady, 0));
}

TEST_P(ControllersOnPlatform, AreReadyWhenThereIsOne) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});

  EXPECT_EQ(full().bytes(), controller_reply(kReady, {numbered(0)}));
}

TEST_P(ControllersOnPlatform, AreReadyWhenThereWasOne) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});
  full();
  store(kReady, {}, 2000);

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
}

TEST_P(ControllersOnPlatform, AreReadyInADeltaWhenNoneChanged) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {numbered(0)});
  full();
  store(kReady, {numbered(0)}, 2000);

  EXPECT_EQ(delta().bytes(), controller_header(kReady, 0));
}

TEST_P(ControllersOnPlatform, KeepAnyOtherState) {
  files.write_text(kProductFile, GetParam());
  store(3, {});

  EXPECT_EQ(full().bytes(), controller_header(3, 0));
}

TEST_P(ControllersOnPlatform, AreNotReadyWhenTheirCountWrappedToNone) {
  files.write_text(kProductFile, GetParam());
  store(kReady, numbered_below(256));

  EXPECT_EQ(full({.size = 1u << 20}).bytes(), controller_header(kNotReady, 0));
}

// The reply's state is adjusted, not the one that is remembered.
TEST_P(ControllersOnPlatform, AreComparedWithTheStateOfTheFile) {
  files.write_text(kProductFile, GetParam());
  store(kReady, {});
  full();
  store(kReady, {numbered(0)}, 2000);

  const Reply reply = delta();

  EXPECT_EQ(reply.bytes(), controller_reply(kReady, {numbered(0)}));
  EXPECT_THAT(system_log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ControllersOnPlatform, Values("kestrano", "MORVIK-2"));

TEST_F(ControllersAndPlatform, OnAnyOtherPlatformAreReadyThoughThereAreNone) {
  files.write_text(kProductFile, "tarnika");
  store(kReady, {});

  EXPECT_EQ(full().bytes(), controller_header(kReady, 0));
}

TEST_F(ControllersAndPlatform, TheSecondPlatformIsNotAskedWhenTheFirstSaysYes) {
  files.write_text(kProductFile, "kestrano");
  store(kReady, {});

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 1);
}

TEST_F(ControllersAndPlatform, BothPlatformsAreAskedWhateverTheReplyHolds) {
  files.write_text(kProductFile, "tarnika");
  store(kNotReady, {numbered(0)});

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 2);
}

TEST_F(ControllersAndPlatform, ThePlatformIsAskedInADeltaToo) {
  files.write_text(kProductFile, "morvik");
  store(kNotReady, {numbered(0)});

  delta();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 2);
}

TEST_F(ControllersAndPlatform, ThePlatformIsNotAskedByADeltaThatEndsEarly) {
  store(0, {numbered(0)});

  delta();

  EXPECT_THAT(calls(), Contains("fread"));
  EXPECT_EQ(number_of_calls("fopen /etc/product"), 0);
}

TEST_F(ControllersAndPlatform, ThePlatformIsAskedOnceInALifetime) {
  files.write_text(kProductFile, "tarnika");
  store(kReady, {});
  full();
  forget_calls();

  full();

  EXPECT_EQ(number_of_calls("fopen /etc/product"), 0);
}

TEST_F(ControllersAndPlatform, ThePlatformIsAskedAfterTheRecordsAndBeforeTheReadErrorIsLogged) {
  store(kReady, {numbered(0)});
  fail("fread", 2, EIO);

  full();

  const auto &seen = calls();
  const auto platform = std::ranges::find(seen, "fopen /etc/product");
  const auto log = std::ranges::find(seen, "syslog");
  ASSERT_NE(platform, seen.end());
  ASSERT_NE(log, seen.end());
  EXPECT_LT(platform, log);
  EXPECT_EQ(std::find(platform, seen.end(), "fread"), seen.end());
}

TEST_F(ControllersAndPlatform, WithoutAProductFileBothPlatformsTraceFromTheFirstToTheSecond) {
  store(kReady, {});
  trace_at(3);

  full();

  const std::string no_file =
      "<read_product_file: 180> [read_product_file]fopen(/etc/product) failed: errno 2 (No such file or directory)";
  const std::string no_word = "fscanf on product file gave unexpected value 0: 2 (No such file or directory)";
  EXPECT_EQ(trace(), no_file + "<running_on_kestrano: 203> [running_on_kestrano]" + no_word + no_file +
                         "<running_on_morvik: 224> [running_on_morvik]" + no_word);
}

}  // namespace
}  // namespace tests
