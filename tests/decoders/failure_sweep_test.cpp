#include "host/failure_sweep.h"

#include <cerrno>
#include <tuple>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

// A file is decoded while calls fail, and then once more.
class Scene : public SweepScene<DecoderTest> {
 public:
  explicit Scene(const DecoderKind &kind) : kind_(kind) { store(kind_, kind_.file_of(3)); }

  bool disturb(const Failure &failure, int nth, Extent extent) {
    return disturb_during(failure, nth, extent, [&] { decode(kind_); });
  }

  void expect_it_to_be_as_good_as_ever(const Failure &) {
    EXPECT_EQ(decode(kind_).result, 0);
    EXPECT_EQ(text(kind_), kind_.text_of(3));
  }

 private:
  const DecoderKind &kind_;
};

const Failure kFailures[] = {failure("unlink", EACCES), failure("fopen", EACCES), failure("stat", EIO),
                             failure("calloc", ENOMEM), failure("fread", EIO),    failure("fclose", ENOSPC)};

class DecoderSweep : public testing::TestWithParam<std::tuple<DecoderKind, Failure, Extent>> {};

TEST_P(DecoderSweep, SurvivesEveryFailure) {
  const auto &[kind, failure, extent] = GetParam();

  sweep<Scene>(failure, extent, kind);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DecoderSweep,
                         testing::Combine(testing::ValuesIn(kDecoderKinds), testing::ValuesIn(kFailures),
                                          testing::Values(Extent::kOnce, Extent::kFromThereOn)));

}  // namespace
}  // namespace tests
