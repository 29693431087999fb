// A host that a fuzzer drives: store files, marker files and the host's own behaviour are the fuzzer's choice.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_symbols.h"
#include "host/libc_stand_ins.h"
#include "host/plugin.h"

namespace fuzz {

// The fuzzer's bytes, spent one choice after the other; zeros when they run out.
class Choices {
 public:
  Choices(const uint8_t *data, size_t size) : data_(data), left_(size) {}

  bool exhausted() const { return left_ == 0; }
  uint8_t byte();
  std::string bytes(size_t count);
  std::string rest() { return bytes(left_); }

 private:
  const uint8_t *data_;
  size_t left_;
};

class FuzzHost : private host::LibcWatcher, private host::ReplyOwner {
 public:
  explicit FuzzHost(const std::string &plugin_path);
  ~FuzzHost() override;

  // Forgets all files. What the plug-in remembers is the target's to reset: unloading it would take its coverage along.
  void start_over();

  void write(const std::string &path, const std::string &content);
  void remove(const std::string &path);

  // From now on, before one call in so many, libc fails as the choices say; 0 for never.
  void fail_one_in(uint8_t rate, Choices *choices);

  // Calls the entry point with a buffer of `size` bytes. The choices decide how requests for more are answered. Aborts
  // on what no call may do: an unknown status, a length beyond the buffer, a lock that is kept.
  void call(const std::string &entry_point, uint32_t size, Choices &choices);

  // Calls a decoder. Aborts when it leaves a descriptor open.
  void decode(const std::string &decoder, const char *input_dir, const char *output_dir);

 private:
  std::string real_path(const std::string &path) override { return root_ + path; }
  host::Verdict before(const std::string &function, const std::string &detail) override;
  void on_syslog(int, const std::string &) override {}
  uint8_t *grow(uint32_t size, uint32_t *available) override;

  host::Plugin plugin_;
  std::string root_;
  std::vector<uint8_t> buffer_;
  Choices *choices_ = nullptr;
  Choices *faults_ = nullptr;
  uint8_t fault_rate_ = 0;
  int64_t clock_ = 0;  // every file is newer than the one before
};

}  // namespace fuzz
