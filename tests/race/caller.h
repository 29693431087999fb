// A host's thread: it calls a loaded plug-in, and keeps what came of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/host_symbols.h"
#include "host/plugin.h"
#include "host/redirection.h"
#include "host/store_directory.h"

namespace tests {

// A reply buffer that moves when it grows, up to a size, and knows whether anything was written behind its end.
class GuardedBuffer : public host::ReplyOwner {
 public:
  explicit GuardedBuffer(uint32_t size, uint32_t limit) : limit_(limit) { replace(size); }

  uint8_t *grow(uint32_t size, uint32_t *available) override;

  uint8_t *bytes() { return bytes_.data(); }
  uint32_t size() const { return size_; }
  bool is_intact() const;

 private:
  void replace(uint32_t size);

  uint32_t limit_;
  uint32_t size_ = 0;
  std::vector<uint8_t> bytes_ = {};
};

struct Answer {
  int32_t status;
  uint32_t length;
  Bytes bytes;  // `length` of them
};

// What fills a buffer before a call.
inline constexpr uint8_t kUnwritten = 0xA5;

class Caller : private host::Redirection {
 public:
  Caller(const host::Plugin &plugin, const StoreDirectory &files) : plugin_(plugin), files_(files) {}

  // The host may grant up to `limit` bytes.
  Answer call(const std::string &entry_point, uint32_t size = 1 << 17, uint32_t limit = 1 << 24);

  // The same in steps, for what holds only during the call itself.
  class Call {
   public:
    Call(Caller &caller, const std::string &entry_point, uint32_t size, uint32_t limit);
    void make();
    Answer answer();

   private:
    Caller &caller_;
    const std::string entry_point_;
    host::EntryPoint *function_;
    GuardedBuffer buffer_;
    int32_t status_ = 0;
    uint32_t length_ = 0;
  };

  // Anything else that the plug-in exports.
  template <typename Function, typename... Arguments>
  auto call_function(const std::string &name, Arguments... arguments) {
    auto *const function = plugin_.function<Function>(name);
    const host::PluginScope scope(*this);
    return function(arguments...);
  }

  // The lines for the system log since the last time they were asked for.
  std::vector<std::string> system_log();

 private:
  std::optional<std::string> resolve(const char *function, const std::string &path) override;
  void log(int priority, const std::string &line) override;

  const host::Plugin &plugin_;
  const StoreDirectory &files_;
  std::vector<std::string> system_log_ = {};
};

// Those of this process.
long open_descriptors();

}  // namespace tests
