// Random histories: whatever happens, the plug-in does what its plain model does, byte for byte.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "model/history.h"
#include "model/kinds.h"

namespace model {
namespace {

// By hand, as many histories as one has time for, from any seed.
uint64_t setting(const char *name, uint64_t usual) {
  const char *const text = getenv(name);
  return text ? strtoull(text, nullptr, 0) : usual;
}

class Oracle : public testing::TestWithParam<Kind> {};

TEST_P(Oracle, AgreesWithThePluginInEveryHistory) {
  const Kind &kind = GetParam();
  const uint64_t remembering = setting("MCS_HISTORIES", 1000);
  const uint64_t histories = kind.decode ? (remembering + 4) / 5 : remembering;  // decoders remember nothing
  const uint64_t first_seed = setting("MCS_SEED", 1);

  for (uint64_t seed = first_seed; seed < first_seed + histories; ++seed) {
    Choices choices(seed);
    if (live_through(kind, choices).difference.empty()) continue;
    Choices shortest(shrunk(choices.made(), [&](const std::vector<uint32_t> &simpler) {
      Choices again(simpler);
      return !live_through(kind, again).difference.empty();
    }));
    const Finding finding = live_through(kind, shortest);
    FAIL() << "seed " << seed << ", cut down to the shortest history:\n" << finding.story << finding.difference;
  }
  std::cout << kind.name << ": " << histories << " histories from seed " << first_seed << '\n';
}

INSTANTIATE_TEST_SUITE_P(OfAKind, Oracle,
                         testing::Values(bbus(), controllers(), drives(), expanders(), nvme_controllers(),
                                         nvme_drives(), virtual_drives()),
                         [](const auto &kind) { return kind.param.name; });

INSTANTIATE_TEST_SUITE_P(OfADecoder, Oracle, testing::ValuesIn(decoders()),
                         [](const auto &kind) { return kind.param.name; });

}  // namespace
}  // namespace model
