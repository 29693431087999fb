// The decoders, and what they call for each record.

#include <filesystem>
#include <string>

#include "decoders/decoder_kinds.h"
#include "sweep/scene.h"

namespace tests {
namespace {

// What is decoded.
enum class Input { kRecords, kNone, kEmpty };

class DecoderScene : public Scene {
 public:
  DecoderScene(const DecoderKind &kind, Input input) : kind_(kind) {
    std::filesystem::create_directories(host.files.real("/in"));
    std::filesystem::create_directories(host.files.real("/out"));
    host.files.write_text(output_, "what an earlier run has left");
    if (input == Input::kRecords) store(kind_.file_of(kRecords));
    if (input == Input::kEmpty) store(Bytes());
  }

  Outcome act() override {
    const auto decode = host.plugin(static_cast<decltype(&list_controllers)>(nullptr), kind_.decoder);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = decode("/in", "/out");
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    const std::string text = host.files.read(output_);
    return {.result = result, .answer = Bytes().text(text, text.size())};
  }

  bool goes_unnoticed(const Failure &failure) const override {
    return !failure.verdict.fails || failure.function == "puts" || failure.function == "fflush";
  }

  // The number of characters of a message, or what closing a file comes to.
  void check_disturbed(const Outcome &outcome, const Outcome &, const Failure &) override {
    EXPECT_GE(outcome.result, EOF);
  }

  std::string go_on(Next, const Outcome &, const Failure *) override {
    store(kind_.file_of(kRecords));
    const Outcome outcome = act();
    const std::string text = kind_.text_of(kRecords);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.answer, Bytes().text(text, text.size()));
    return {};
  }

 private:
  static constexpr size_t kRecords = 2;

  void store(const Bytes &content) { host.files.write(std::string("/in/") + kind_.store, content); }

  const DecoderKind &kind_;
  const std::string output_ = std::string("/out/") + kind_.store + "_decoded.txt";
};

}  // namespace

std::vector<Situation> situations_of_decoders() {
  std::vector<Situation> situations;
  for (const DecoderKind &kind : kDecoderKinds) {
    const auto add = [&](const char *name, Input input) {
      situations.push_back({std::string(kind.decoder) + ": " + name,
                            [&kind, input] { return std::make_unique<DecoderScene>(kind, input); }});
    };
    add("two records", Input::kRecords);
    add("no file", Input::kNone);
    add("empty file", Input::kEmpty);
  }
  return situations;
}

}  // namespace tests
