#include "fuzz/host/fuzz_host.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "mcserver_storage.h"

namespace fuzz {
namespace {

// More than a run has open. A descriptor beyond it tells that some are leaking.
constexpr int kMostDescriptors = 64;

}  // namespace

uint8_t Choices::byte() {
  if (left_ == 0) return 0;
  --left_;
  return *data_++;
}

std::string Choices::bytes(size_t count) {
  const size_t taken = std::min(count, left_);
  std::string result(data_, data_ + taken);
  data_ += taken;
  left_ -= taken;
  return result;
}

FuzzHost::FuzzHost(const std::string &plugin_path) : plugin_(plugin_path) {
  std::string pattern = "/tmp/mcserver_storage_fuzz.XXXXXX";
  if (!mkdtemp(pattern.data())) abort();
  root_ = pattern;
  mc_debug_level = 9;
  outfp = fopen("/dev/null", "w");
}

FuzzHost::~FuzzHost() { std::filesystem::remove_all(root_); }

void FuzzHost::start_over() {
  std::filesystem::remove_all(root_);
  faults_ = nullptr;
}

void FuzzHost::write(const std::string &path, const std::string &content) {
  std::filesystem::create_directories(std::filesystem::path(root_ + path).parent_path());
  std::ofstream(root_ + path, std::ios::binary) << content;
  struct timespec times[2] = {};
  times[0].tv_sec = times[1].tv_sec = static_cast<time_t>(++clock_);
  utimensat(AT_FDCWD, (root_ + path).c_str(), times, 0);
}

void FuzzHost::remove(const std::string &path) { std::filesystem::remove_all(root_ + path); }

void FuzzHost::fail_one_in(uint8_t rate, Choices *choices) {
  fault_rate_ = rate;
  faults_ = rate > 0 ? choices : nullptr;
}

void FuzzHost::call(const std::string &entry_point, uint32_t size, Choices &choices) {
  auto *const function = plugin_.function<host::EntryPoint>(entry_point);
  buffer_ = std::vector<uint8_t>(size, 0xA5);
  buffer_.shrink_to_fit();
  choices_ = &choices;
  uint32_t length = 0;
  int32_t status;
  {
    const host::PluginScope scope(*this);
    status = function(static_cast<host::ReplyOwner *>(this), buffer_.data(), size, &length);
  }

  constexpr int32_t kResults[] = {0, -13, -35, -37, -4, 35};
  if (std::find(std::begin(kResults), std::end(kResults), status) == std::end(kResults)) abort();
  if (status == 0 ? length > buffer_.size() : length != 0) abort();
  for (const char *lock_file : {"/var/storctlr_info", "/var/nvmectlr_info"}) {
    const int fd = open((root_ + lock_file).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd == -1) continue;
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) abort();
    if (fd > kMostDescriptors) abort();
    close(fd);
  }
}

void FuzzHost::decode(const std::string &decoder, const char *input_dir, const char *output_dir) {
  auto *const function = plugin_.function<int(const char *, const char *)>(decoder);
  {
    const host::PluginScope scope(*this);
    function(input_dir, output_dir);
  }
  const int fd = open(root_.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd > kMostDescriptors) abort();
  close(fd);
}

host::Verdict FuzzHost::before(const std::string &function, const std::string &) {
  if (!faults_ || faults_->exhausted() || faults_->byte() % fault_rate_ != 0) return {};
  // Without an unlock the lock would rightly be kept.
  if (function == "flock") return {};
  return {.fails = true, .error = function.ends_with("alloc") ? ENOMEM : EIO};
}

uint8_t *FuzzHost::grow(uint32_t size, uint32_t *available) {
  const uint8_t choice = choices_->byte() % 4;
  if (choice == 1) return nullptr;
  if (choice == 2 || size > (64u << 20)) {
    *available = static_cast<uint32_t>(buffer_.size());
    return buffer_.data();
  }
  buffer_ = std::vector<uint8_t>(size, 0x5A);
  if (choice != 3) *available = size;
  return buffer_.data();
}

}  // namespace fuzz
