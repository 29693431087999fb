#include "host/watched_host.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <utility>

#include "host/open_descriptors.h"

namespace tests {
namespace {

constexpr const char *kLockFiles[] = {"/var/storctlr_info", "/var/nvmectlr_info"};

}  // namespace

WatchedHost::WatchedHost() : trace_stream_(fdopen(memfd_create("trace", MFD_CLOEXEC), "w+")) {
  mc_debug_level = 0;
  use_cmclog = 0;
  outfp = trace_stream_;
  load();
}

WatchedHost::~WatchedHost() {
  outfp = nullptr;
  fclose(trace_stream_);
}

void WatchedHost::unload() {
  {
    const host::PluginScope scope(*this);
    plugin_.reset();
  }
  if (!blocks_.empty()) complain(std::to_string(blocks_.size()) + " blocks of memory are never freed");
  blocks_.clear();
}

void WatchedHost::load() { plugin_.emplace(PLUGIN_PATH); }

Reply WatchedHost::call(const std::string &entry_point, const CallOptions &options) {
  auto *const function = plugin_->function<host::EntryPoint>(entry_point);
  HostReplyBuffer buffer(options.size, options.growth, options.most);
  Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
  const auto descriptors = open_descriptors();

  {
    const host::PluginScope scope(*this);
    reply.status = function(static_cast<host::ReplyOwner *>(&buffer), options.null_buffer ? nullptr : buffer.bytes(),
                            buffer.size(), &reply.length);
  }

  if (open_descriptors() != descriptors) complain(entry_point + " left a descriptor open");
  for (const char *path : kLockFiles)
    if (!files.is_unlocked(path)) complain(entry_point + " left " + path + " locked");
  reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
  reply.requests = buffer.requests();
  return reply;
}

Printed WatchedHost::printed_by(const std::function<int()> &function) {
  const auto descriptors = open_descriptors();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int result = function();
  const std::string out = testing::internal::GetCapturedStdout();
  const std::string err = testing::internal::GetCapturedStderr();
  if (open_descriptors() != descriptors) complain("a descriptor was left open");
  return {result, out, err};
}

Printed WatchedHost::decode(const std::string &decoder, const char *input_dir, const char *output_dir) {
  using Function = int (*)(const char *, const char *);
  return printed_by([&] { return plugin(Function{nullptr}, decoder)(input_dir, output_dir); });
}

void WatchedHost::inject(const std::string &function, int nth, host::Verdict verdict) {
  faults_.push_back({function, nth, verdict});
}

void WatchedHost::before_call(const std::string &function, int nth, std::function<void()> action) {
  hooks_.push_back({function, nth, false, std::move(action)});
}

void WatchedHost::before_calls_from(const std::string &function, int nth, std::function<void()> action) {
  hooks_.push_back({function, nth, true, std::move(action)});
}

void WatchedHost::forget_faults() {
  faults_.clear();
  hooks_.clear();
}

host::Verdict WatchedHost::before(const std::string &function, const std::string &detail) {
  std::string &call = calls_.emplace_back(function);
  if (!detail.empty()) call.append(" ").append(detail);
  if (function.ends_with("_s") && call.find(" of ") != call.npos) complain(call);
  for (Hook &hook : hooks_)
    if (hook.function == function && (--hook.calls_to_go == 0 || (hook.again && hook.calls_to_go < 0))) hook.action();

  // A sweep injects hundreds of faults; those that have happened are dropped.
  host::Verdict verdict;
  for (Fault &fault : faults_)
    if (fault.function == function && --fault.nth == 0) verdict = fault.verdict;
  std::erase_if(faults_, [](const Fault &fault) { return fault.nth <= 0; });
  return verdict;
}

void WatchedHost::on_syslog(int priority, const std::string &line) {
  if (priority != 6) complain("priority " + std::to_string(priority) + " of: " + line);
  system_log_.push_back(line);
}

void WatchedHost::on_memory(void *given_back, void *taken, const void *) {
  blocks_.erase(given_back);
  if (taken) blocks_.insert(taken);
}

void WatchedHost::trace_at(int32_t level) { mc_debug_level = level; }

std::string WatchedHost::trace() {
  std::string text;
  fseek(trace_stream_, trace_read_, SEEK_SET);
  for (int c = fgetc(trace_stream_); c != EOF; c = fgetc(trace_stream_)) text += static_cast<char>(c);
  trace_read_ = ftell(trace_stream_);
  fseek(trace_stream_, 0, SEEK_END);
  return text;
}

std::vector<std::string> WatchedHost::system_log() { return std::exchange(system_log_, {}); }

}  // namespace tests
