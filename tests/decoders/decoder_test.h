// Decoders at work on files in /in, with their texts in /out.
#pragma once

#include <filesystem>
#include <string>

#include "decoders/decoder_kinds.h"
#include "host/plugin_test.h"

namespace tests {

class DecoderTest : public PluginTest {
 protected:
  DecoderTest() {
    std::filesystem::create_directories(files.real("/in"));
    std::filesystem::create_directories(files.real("/out"));
  }

  static std::string input(const DecoderKind &kind) { return std::string("/in/") + kind.store; }
  static std::string output(const DecoderKind &kind) { return std::string("/out/") + kind.store + "_decoded.txt"; }

  void store(const DecoderKind &kind, const Bytes &content) { files.write(input(kind), content); }
  std::string text(const DecoderKind &kind) const { return files.read(output(kind)); }

  // What a decoder prints for so many records.
  static std::string echoes(const DecoderKind &kind, size_t records) {
    std::string lines;
    for (size_t i = 0; !kind.is_nvme && i < records; ++i) lines += output(kind) + "\n";
    return lines;
  }

  Printed decode(const DecoderKind &kind, const char *input_dir = "/in", const char *output_dir = "/out") {
    return WatchedHost::decode(kind.decoder, input_dir, output_dir);
  }
};

// Runs for every kind.
class EveryDecoder : public DecoderTest, public testing::WithParamInterface<DecoderKind> {};

inline std::string name_of(const testing::TestParamInfo<DecoderKind> &info) { return info.param.decoder; }

}  // namespace tests
