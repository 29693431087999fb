// Decoders at work on files in /in, with their texts in /out.
#pragma once

#include <filesystem>
#include <string>

#include "decoders/decoder_kinds.h"
#include "host/open_descriptors.h"
#include "host/plugin_test.h"

namespace tests {

// What a function that is called left behind on the standard streams.
struct Printed {
  int result;
  std::string out;
  std::string err;
};

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

  // A function's result and what it prints. No descriptor may be left open.
  template <typename Function>
  Printed printed_by(Function function);

  Printed decode(const DecoderKind &kind, const char *input_dir = "/in", const char *output_dir = "/out") {
    return printed_by([&] {
      return plugin(static_cast<int (*)(const char *, const char *)>(nullptr), kind.decoder)(input_dir, output_dir);
    });
  }
};

template <typename Function>
Printed DecoderTest::printed_by(Function function) {
  const auto descriptors = open_descriptors();
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int result = function();
  const std::string out = testing::internal::GetCapturedStdout();
  const std::string err = testing::internal::GetCapturedStderr();
  EXPECT_EQ(open_descriptors(), descriptors);
  return {result, out, err};
}

// Runs for every kind.
class EveryDecoder : public DecoderTest, public testing::WithParamInterface<DecoderKind> {};

inline std::string name_of(const testing::TestParamInfo<DecoderKind> &info) { return info.param.decoder; }

}  // namespace tests
