// Runs the plug-in's decoders over copies of store files.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/plugin.h"
#include "mcstore/kinds/kind.h"

namespace mcstore {

enum class DecodedAs {
  kWritten,
  kWrittenOfDamaged,  // all that there is, of a file that does not hold what it should
  kNotFound,
  kFailed,
};

struct Decoded {
  DecodedAs as;
  std::string text;  // what was written, and what is wrong with the file; what was missing; or what went wrong
};

// The size of a kind's store file in that directory; 0 when there is none.
uint64_t input_size(const std::string &input_dir, const Kind &kind);

// A decoder's result does not tell what it has written, so its text is compared with the records.
class Decoding {
 public:
  // `plugin` as load_plugin() takes it. `on_progress` is called before each record is written, and before it is
  // compared, with how much of the work is done, as bytes of the kind's file.
  Decoding(const std::string &plugin, const std::string &input_dir, const std::string &output_dir,
           std::function<void(uint64_t)> on_progress);

  // Decodes a kind that has a decoder.
  Decoded decode(const Kind &kind);

 private:
  void run_decoder(const Kind &kind, const std::string &output_path);
  Decoded write_text(const Kind &kind, const std::string &input_path, const std::string &output_path);

  host::Plugin plugin_;
  std::string input_dir_;
  std::string output_dir_;
  std::function<void(uint64_t)> on_progress_;
};

}  // namespace mcstore
