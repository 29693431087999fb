#include "fuzz/host/fuzz_host.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>

#include "fuzz/host/require.h"
#include "mcserver_storage.h"

namespace fuzz {
namespace {

// Those that the host sees, and can make fail.
constexpr const char *kLibcFunctions[] = {"fopen",   "stat",    "fileno", "flock",  "fread",
                                          "fclose",  "fprintf", "fflush", "malloc", "calloc",
                                          "realloc", "unlink",  "fscanf", "syslog", "localtime_r"};

constexpr int kTellingErrors[] = {ENOMEM, ENOENT, EINTR, EIO};  // those that a program may tell from others
constexpr int kErrors = EHWPOISON + 1;                          // 0 leaves errno alone
constexpr int kFirstCalls = 8;
constexpr int kMostDescriptors = 64;  // more than a run has open
constexpr uint32_t kLargestBuffer = 4u << 20;

// A stream for the trace that costs no system call.
FILE *stream_to_nowhere() {
  const cookie_io_functions_t nowhere = {
      .read = nullptr,
      .write = [](void *, const char *, size_t size) { return static_cast<ssize_t>(size); },
      .seek = nullptr,
      .close = nullptr,
  };
  return fopencookie(nullptr, "w", nowhere);
}

// In one system call, since it is asked before and after each call.
ptrdiff_t open_descriptors() {
  struct pollfd descriptors[kMostDescriptors];
  for (int fd = 0; fd < kMostDescriptors; ++fd) descriptors[fd] = {.fd = fd, .events = 0, .revents = 0};
  poll(descriptors, kMostDescriptors, 0);
  return std::ranges::count_if(descriptors, [](const auto &one) { return (one.revents & POLLNVAL) == 0; });
}

}  // namespace

FuzzHost::FuzzHost() { outfp = stream_to_nowhere(); }

void FuzzHost::start_over() {
  files.clear();
  for (void *block : memory_) free(block);
  memory_.clear();
  plugin_.restore();
  disturbances_.clear();
  mc_debug_level = 9;
  use_cmclog = 0;
}

void FuzzHost::set_trace(Choices &choices) {
  const uint8_t how = choices.byte();
  mc_debug_level = how & 1 ? 9 : 2;
  use_cmclog = (how >> 1) & 1;
}

void FuzzHost::disturb(const std::string &torn_file, Choices &choices) {
  const uint8_t how = choices.byte();
  Disturbance disturbance;
  disturbance.function = kLibcFunctions[choices.below(std::size(kLibcFunctions))];
  const uint8_t nth = choices.byte();
  disturbance.nth = 1 + (nth < 192 ? nth % kFirstCalls : nth);
  disturbance.again = how & 1;
  const uint8_t error = choices.byte();
  disturbance.verdict = {.fails = (how & 6) != 6,
                         .error = error < 128 ? kTellingErrors[error % std::size(kTellingErrors)] : error % kErrors};
  if ((how & 24) == 24) {
    disturbance.torn_file = torn_file;
    disturbance.torn_size = choices.number();
  }
  disturbances_.push_back(disturbance);
}

void FuzzHost::call_entry_point(const std::function<host::EntryPoint> &entry_point, uint32_t room_beyond,
                                Choices &choices) {
  choices_ = &choices;
  room_beyond_ = room_beyond;
  buffers_.clear();
  const uint32_t size = choices.number();
  const uint8_t nulls = choices.byte();
  uint8_t *const buffer =
      nulls == 1 ? buffers_.emplace_back(Buffer{nullptr, size}).bytes.get() : new_buffer(size, 0xA5);
  uint32_t length = 0;
  uint32_t *const length_out = nulls == 2 ? nullptr : &length;
  const int32_t status =
      call([&] { return entry_point(static_cast<host::ReplyOwner *>(this), buffer, size, length_out); });

  constexpr int32_t kResults[] = {MC_STORE_SUCCESS, MC_STORE_REPLY_TOO_LARGE, MC_STORE_UNAVAILABLE,
                                  MC_STORE_NO_DATA, MC_STORE_NO_BUFFER,       MC_STORE_NO_IMAGE};
  require(std::ranges::find(kResults, status) != std::end(kResults));
  require(length <= buffers_.back().size + room_beyond_);
  require(status == MC_STORE_SUCCESS || length == 0);
}

FuzzHost::Look::Look(FuzzHost &host) : host_(host), open_descriptors_(open_descriptors()) {}

FuzzHost::Look::~Look() {
  require(open_descriptors() == open_descriptors_);
  require(!host_.files.any_is_locked());
  for (const void *block : host_.memory_) require(host_.plugin_.points_to(block));
  host_.disturbances_.clear();
}

host::Verdict FuzzHost::before(const std::string &function, const std::string &) {
  host::Verdict verdict;
  for (Disturbance &disturbance : disturbances_) {
    if (disturbance.function != function || --disturbance.nth > 0) continue;
    if (disturbance.nth < 0 && !disturbance.again) continue;
    verdict = disturbance.verdict;
    files.resize(disturbance.torn_file, disturbance.torn_size);
  }
  return verdict;
}

void FuzzHost::on_memory(void *given_back, void *taken, const void *caller) {
  std::erase(memory_, given_back);
  if (taken && plugin_.has_code(caller)) memory_.push_back(taken);
}

uint8_t *FuzzHost::grow(uint32_t size, uint32_t *available) {
  enum Answer { kMove, kRefuse, kNull, kSayNothing, kGrantLess, kAnswers };
  const auto answer = static_cast<Answer>(choices_->below(kAnswers));
  if (answer == kNull) return nullptr;
  if (answer == kRefuse || size > kLargestBuffer) {
    *available = buffers_.back().size;
    return buffers_.back().bytes.get();
  }
  const uint32_t granted = answer == kGrantLess ? size - 1 : size;
  if (answer != kSayNothing) *available = granted;
  return new_buffer(granted, 0x5A);
}

uint8_t *FuzzHost::new_buffer(uint32_t size, uint8_t fill) {
  if (room_beyond_ == 0) buffers_.clear();
  const uint32_t whole = size + room_beyond_;
  uint8_t *const bytes =
      buffers_.emplace_back(Buffer{std::make_unique_for_overwrite<uint8_t[]>(whole), size}).bytes.get();
  std::fill_n(bytes, whole, fill);
  return bytes;
}

}  // namespace fuzz
