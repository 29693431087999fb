#include "host/plugin_test.h"

#include <sys/mman.h>

#include <utility>

#include "host/open_descriptors.h"

namespace tests {
namespace {

constexpr const char *kLockFiles[] = {"/var/storctlr_info", "/var/nvmectlr_info"};

}  // namespace

PluginTest::PluginTest() : trace_stream_(fdopen(memfd_create("trace", MFD_CLOEXEC), "w+")) {
  mc_debug_level = 0;
  use_cmclog = 0;
  outfp = trace_stream_;
  load();
}

PluginTest::~PluginTest() {
  unload();
  outfp = nullptr;
  fclose(trace_stream_);
}

void PluginTest::unload() {
  {
    const host::PluginScope scope(*this);
    plugin_.reset();
  }
  EXPECT_EQ(blocks_.size(), 0u) << "blocks of memory are never freed";
  blocks_.clear();
}

void PluginTest::load() { plugin_.emplace(PLUGIN_PATH); }

Reply PluginTest::call(const std::string &entry_point, const CallOptions &options) {
  auto *const function = plugin_->function<host::EntryPoint>(entry_point);
  HostReplyBuffer buffer(options.size, options.growth);
  Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
  const auto descriptors = open_descriptors();

  {
    const host::PluginScope scope(*this);
    reply.status = function(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(), &reply.length);
  }

  EXPECT_EQ(open_descriptors(), descriptors) << entry_point << " left a descriptor open";
  for (const char *path : kLockFiles)
    EXPECT_TRUE(files.is_unlocked(path)) << entry_point << " left " << path << " locked";
  reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
  reply.requests = buffer.requests();
  return reply;
}

void PluginTest::inject(const std::string &function, int nth, host::Verdict verdict) {
  faults_.push_back({function, nth, verdict});
}

void PluginTest::before_call(const std::string &function, int nth, std::function<void()> action) {
  hooks_.push_back({function, nth, false, std::move(action)});
}

void PluginTest::before_calls_from(const std::string &function, int nth, std::function<void()> action) {
  hooks_.push_back({function, nth, true, std::move(action)});
}

host::Verdict PluginTest::before(const std::string &function, const std::string &detail) {
  std::string &call = calls_.emplace_back(function);
  if (!detail.empty()) call.append(" ").append(detail);
  if (function.ends_with("_s")) {
    EXPECT_EQ(call.find(" of "), call.npos) << call;
  }
  for (Hook &hook : hooks_)
    if (hook.function == function && (--hook.calls_to_go == 0 || (hook.again && hook.calls_to_go < 0))) hook.action();

  // A sweep injects hundreds of faults; those that have happened are dropped.
  host::Verdict verdict;
  for (Fault &fault : faults_)
    if (fault.function == function && --fault.nth == 0) verdict = fault.verdict;
  std::erase_if(faults_, [](const Fault &fault) { return fault.nth <= 0; });
  return verdict;
}

void PluginTest::on_syslog(int priority, const std::string &line) {
  EXPECT_EQ(priority, 6) << line;
  system_log_.push_back(line);
}

void PluginTest::trace_at(int32_t level) { mc_debug_level = level; }

std::string PluginTest::trace() {
  std::string text;
  fseek(trace_stream_, trace_read_, SEEK_SET);
  for (int c = fgetc(trace_stream_); c != EOF; c = fgetc(trace_stream_)) text += static_cast<char>(c);
  trace_read_ = ftell(trace_stream_);
  fseek(trace_stream_, 0, SEEK_END);
  return text;
}

std::vector<std::string> PluginTest::system_log() { return std::exchange(system_log_, {}); }

}  // namespace tests
