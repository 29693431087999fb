// Runs the plug-in's decoders over copies of store files.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/libc_stand_ins.h"
#include "host/plugin.h"
#include "mcstore/kind.h"

namespace mcstore {

struct Decoded {
  bool failed;
  std::string text;  // what was written, what was missing or what went wrong
};

// The size of a kind's store file in that directory; 0 when there is none.
uint64_t input_size(const std::string &input_dir, const Kind &kind);

class Decoding : private host::LibcWatcher {
 public:
  // `plugin` as load_plugin() takes it. `on_record` is called before each record is written, with how many bytes of the
  // kind's file are done.
  Decoding(const std::string &plugin, const std::string &input_dir, const std::string &output_dir,
           std::function<void(uint64_t)> on_record);

  // Decodes a kind that has a decoder.
  Decoded decode(const Kind &kind);

 private:
  // A kind that is being decoded.
  struct Work {
    const Kind &kind;
    std::string output_path;
    uint64_t openings = 0;  // of the output
    int close_error = 0;
  };

  std::string output_path(const Kind &kind) const;
  static Decoded judge(const Work &work, uint64_t size, const std::string &out, const std::string &err);

  std::string resolve(const std::string &path) override { return path; }
  host::Verdict before(const std::string &function, const std::string &detail) override;
  void on_failed_close(int error) override;
  void on_syslog(int, const std::string &) override {}  // decoders write no log

  host::Plugin plugin_;
  std::string input_dir_;
  std::string output_dir_;
  std::function<void(uint64_t)> on_record_;
  Work *work_ = nullptr;
};

}  // namespace mcstore
