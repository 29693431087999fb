#include "mcstore/background.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "mcstore/command_line.h"

namespace tests {
namespace {

using Clock = std::chrono::steady_clock;

// Not by fork, which does not survive in an emulated process.
pid_t start(const std::string &command, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  std::array<std::string, 3> words = {"sh", "-c", command};
  std::array<char *, 4> arguments = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t pid = -1;
  const int error = posix_spawn(&pid, "/bin/sh", &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + command);
  return pid;
}

}  // namespace

Background::Background(const std::string &arguments) {
  const std::string command = "exec " + mcstore_command() + ' ' + arguments;
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  output_ = ends[0];
  pid_ = start(command, ends[1]);
  close(ends[1]);
}

Background::~Background() {
  close_output();
  if (pid_ == -1) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

std::string Background::line(std::chrono::milliseconds patience) {
  const Clock::time_point end = Clock::now() + patience;
  for (size_t length = read_.find('\n'); length == read_.npos; length = read_.find('\n')) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    struct pollfd waiting = {.fd = output_, .events = POLLIN, .revents = 0};
    if (rest.count() <= 0 || poll(&waiting, 1, static_cast<int>(rest.count())) != 1) return "";
    std::array<char, 4096> chunk;
    const ssize_t count = read(output_, chunk.data(), chunk.size());
    if (count <= 0) return "";
    read_.append(chunk.data(), static_cast<size_t>(count));
  }
  const std::string first = read_.substr(0, read_.find('\n'));
  read_.erase(0, first.size() + 1);
  return first;
}

void Background::close_output() {
  if (output_ != -1) close(output_);
  output_ = -1;
}

void Background::send(int signal) const { kill(pid_, signal); }

int Background::exit_code() {
  const Clock::time_point end = Clock::now() + std::chrono::seconds(30);
  for (int status = 0; Clock::now() < end; std::this_thread::sleep_for(std::chrono::milliseconds(10))) {
    if (waitpid(pid_, &status, WNOHANG) != pid_) continue;
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  return -1;
}

}  // namespace tests
