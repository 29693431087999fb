// Dumps that cannot be written are lost, and nothing else is: answers are as they should be, and the next dump is
// whole.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "race/caller.h"
#include "race/follower.h"
#include "race/kinds.h"
#include "race/limit.h"

namespace tests {
namespace {

constexpr std::array kDumps = {"/var/mctool_stordebug", "/var/mctool_ctlrdebug", "/var/mctool_pddebug",
                               "/var/mctool_vddebug", "/var/mctool_bbudebug"};

std::string text_of(const std::string &dump) { return dump + ".txt"; }

class Dumps : public testing::TestWithParam<Kind> {
 protected:
  Dumps() {
    for (const char *dump : kDumps) files_.write_text(dump, "");
    files_.write(kind().lock, Bytes().u8(kind().ready));
    store();
    call();  // the first one has no other to compare with
    remove_dumps();
    call();
    whole_dumps_ = dumps();
    remove_dumps();
    EXPECT_NE(whole_dumps_[0], "");
  }

  static const Kind &kind() { return GetParam(); }

  // A full call, whose answer and dumps are always the same.
  void call() {
    const auto descriptors = open_descriptors();
    const Answer answer = caller_.call(kind().full);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.bytes, kind().answer(everything(kNow), answer.bytes));
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_TRUE(files_.is_unlocked(kind().lock));
  }

  void remove_dumps() {
    for (const char *dump : kDumps) files_.remove(text_of(dump));
  }

  std::array<std::string, kDumps.size()> dumps() {
    std::array<std::string, kDumps.size()> texts;
    for (size_t i = 0; i < kDumps.size(); ++i) texts[i] = files_.read(text_of(kDumps[i]));
    return texts;
  }

  void expect_the_next_dumps_to_be_whole() {
    remove_dumps();
    call();
    EXPECT_EQ(dumps(), whole_dumps_);
  }

  const Generation kNow = generation(7);
  StoreDirectory files_;

 private:
  void store() { files_.write(kind().store, store_file(kind(), kNow), kNow.modified()); }

  host::Plugin plugin_{PLUGIN_PATH};
  Caller caller_{plugin_, files_};
  std::array<std::string, kDumps.size()> whole_dumps_ = {};
};

TEST_P(Dumps, EndWhereFilesMayNotBeLarger) {
  // A process that is not prepared for it would be ended by its system.
  const auto previous = signal(SIGXFSZ, SIG_IGN);
  for (const rlim_t most : {rlim_t{0}, rlim_t{1}, rlim_t{100}, rlim_t{4096}, rlim_t{5000}}) {
    {
      const Limit limit(RLIMIT_FSIZE, most);
      call();
    }
    for (const std::string &text : dumps()) EXPECT_LE(text.size(), most);
    remove_dumps();
  }
  signal(SIGXFSZ, previous);

  expect_the_next_dumps_to_be_whole();
}

TEST_P(Dumps, AreLostWhereTheirDeviceIsFull) {
  for (const char *dump : kDumps) std::filesystem::create_symlink("/dev/full", files_.real(text_of(dump)));

  call();

  expect_the_next_dumps_to_be_whole();
}

// Gives this process a mount namespace of its own, for good; who is not root becomes root of a user namespace, too.
bool has_own_mounts() {
  const std::string user = "0 " + std::to_string(getuid()) + " 1";
  const std::string group = "0 " + std::to_string(getgid()) + " 1";
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user;
    std::ofstream("/proc/self/gid_map") << group;
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A file system of two pages, if the system lets this process have one.
class SmallFileSystem {
 public:
  explicit SmallFileSystem(const std::string &directory)
      : directory_(directory),
        is_there_(std::filesystem::create_directory(directory) && has_own_mounts() &&
                  mount("none", directory.c_str(), "tmpfs", 0, "size=8192") == 0),
        problem_(is_there_ ? "" : std::string("no file system of its own: ") + strerror(errno)) {}
  SmallFileSystem(const SmallFileSystem &) = delete;
  SmallFileSystem &operator=(const SmallFileSystem &) = delete;
  ~SmallFileSystem() {
    if (is_there_) umount2(directory_.c_str(), MNT_DETACH);
  }

  // Why it is not there; empty if it is.
  const std::string &problem() const { return problem_; }

 private:
  std::string directory_;
  bool is_there_;
  std::string problem_;
};

TEST_P(Dumps, EndWhereTheFileSystemIsFull) {
  const std::string directory = files_.real("/small");
  const SmallFileSystem file_system(directory);
  if (!file_system.problem().empty()) GTEST_SKIP() << file_system.problem();
  int number = 0;
  for (const char *dump : kDumps)
    std::filesystem::create_symlink(directory + '/' + std::to_string(++number), files_.real(text_of(dump)));

  for (int i = 0; i < 20; ++i) call();

  EXPECT_EQ(std::filesystem::space(directory).free, 0u);
  expect_the_next_dumps_to_be_whole();
}

INSTANTIATE_TEST_SUITE_P(Kinds, Dumps, testing::ValuesIn(raid_kinds().begin(), raid_kinds().end()), name_of);

}  // namespace
}  // namespace tests
