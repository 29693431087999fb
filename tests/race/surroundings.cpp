#include "race/surroundings.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include "race/limit.h"

// Where a sanitizer is part of the program, it has one of these.
extern "C" __attribute__((weak)) void __asan_init();
extern "C" __attribute__((weak)) void __tsan_init();

namespace tests {
namespace {

// Disabled, because it is for no_threads(). Without the threads that it asks for, it does not come to its end.
TEST(Emulation, DISABLED_HasThreads) {
  std::vector<std::jthread> threads(6);
  for (std::jthread &thread : threads)
    thread = std::jthread([] {
      for (int i = 0; i < 1000; ++i) fclose(tmpfile());
    });
}

// The emulator of this process, which shows where it has not thought of covering up; the program itself otherwise.
std::filesystem::path emulator() { return std::filesystem::read_symlink("/proc/thread-self/exe"); }
bool is_emulated() { return emulator() != std::filesystem::read_symlink("/proc/self/exe"); }

// The command of this process, emulator included, for that test alone.
std::vector<std::string> command_for_trial() {
  std::vector<std::string> words;
  std::ifstream command("/proc/thread-self/cmdline");
  for (std::string word; std::getline(command, word, '\0');) words.push_back(word);
  words.insert(words.end(), {"--gtest_filter=Emulation.DISABLED_HasThreads", "--gtest_also_run_disabled_tests"});
  return words;
}

// The status that it ends with, as wait() has it.
int run_quietly(const std::string &program, std::vector<std::string> words) {
  std::vector<char *> arguments;
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  pid_t pid = -1;
  const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return -1;
  int status = -1;
  waitpid(pid, &status, 0);
  return status;
}

std::string tried() {
  if (!is_emulated()) return "";
  const int status = run_quietly(emulator().string(), command_for_trial());
  if (status == 0) return "";
  const std::string end = WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) : "status " + std::to_string(status);
  return "a process with threads does not survive in " + emulator().filename().string() + " (" + end + ")";
}

}  // namespace

std::string no_prompt_signals() { return __tsan_init ? "the thread sanitizer holds signals back" : ""; }

std::string no_limit_on_memory() {
  if (__asan_init || __tsan_init) return "a sanitizer needs all the memory that it wants";
  constexpr size_t kMuch = 1 << 24;
  const Limit nothing_more(RLIMIT_AS, address_space_in_use());
  void *const memory = mmap(nullptr, kMuch, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return "";
  munmap(memory, kMuch);
  return "a limit on the address space does nothing here";
}

std::string no_threads() {
  static const std::string why = tried();
  return why;
}

}  // namespace tests
