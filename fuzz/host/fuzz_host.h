// A host that a fuzzer drives: every libc call may fail, and every request for a larger buffer may get any answer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/host/choices.h"
#include "fuzz/host/memory_files.h"
#include "fuzz/host/plugin_state.h"
#include "host/host_symbols.h"
#include "host/libc_stand_ins.h"
#include "host/plugin.h"

namespace fuzz {

class FuzzHost : private host::LibcWatcher, private host::ReplyOwner {
 public:
  FuzzHost();

  // As if nothing had happened yet: no files, a plug-in just loaded, no disturbance, the trace on.
  void start_over();

  MemoryFiles files;

  void set_trace(Choices &choices);

  // The choices tell how libc disturbs what is called next, and nothing after that: it fails, or the file changes its
  // size.
  void disturb(const std::string &torn_file, Choices &choices);

  // An entry point. The choices decide its buffer, and how requests for a larger one are answered. So many bytes more
  // than it knows of may be written to each buffer, even when it was replaced: a simulation does that.
  void call_entry_point(const std::function<host::EntryPoint> &entry_point, uint32_t room_beyond, Choices &choices);

  // Anything else of the plug-in.
  template <typename Call>
  auto call(Call function) {
    const Look look(*this);
    const host::PluginScope scope(*this);
    return function();
  }

 private:
  std::string real_path(const std::string &path) override { return files.real(path); }
  host::Verdict before(const std::string &function, const std::string &detail) override;
  void on_syslog(int, const std::string &) override {}
  void on_memory(void *given_back, void *taken, const void *caller) override;
  uint8_t *grow(uint32_t size, uint32_t *available) override;

  // Happens to the nth call from now on of a function, and perhaps to all that follow.
  struct Disturbance {
    std::string function;
    int nth;
    bool again;
    host::Verdict verdict;
    std::string torn_file;  // empty for none
    size_t torn_size;
  };

  // At its end, aborts on what no call may leave behind: a lock, an open descriptor, memory that it has lost.
  class Look {
   public:
    explicit Look(FuzzHost &host);
    Look(const Look &) = delete;
    Look &operator=(const Look &) = delete;
    ~Look();

   private:
    FuzzHost &host_;
    ptrdiff_t open_descriptors_;
  };

  struct Buffer {
    std::unique_ptr<uint8_t[]> bytes;
    uint32_t size;  // as the plug-in knows it
  };
  uint8_t *new_buffer(uint32_t size, uint8_t fill);

  PluginState plugin_;
  std::vector<void *> memory_;  // of the plug-in
  std::vector<Disturbance> disturbances_;
  std::vector<Buffer> buffers_;  // the last one is the current one
  uint32_t room_beyond_ = 0;
  Choices *choices_ = nullptr;
};

}  // namespace fuzz
