// Decoders that are wrong, one for each way: MISTAKE chooses. None of them may compile.

#include "decoders/decoder.h"

namespace mcserver::decoders {
namespace {

constexpr HeaderNumber kHeader[] = {
    {MISTAKE == 2 ? sizeof(uint64_t) : sizeof(uint8_t), MISTAKE == 3 ? "Cannot read: %m\n" : "Cannot read '%s': %m\n"}};
constexpr Summary kSummary = {"State: %d\n", MISTAKE == 4 ? "Number: %s\n" : "Number: %d\n"};

[[maybe_unused]] constexpr Decoder kFans({
    .store_path = "/var/storfan_info",
    .unopened = MISTAKE == 1 ? "Cannot open '%s': %d\n" : "Cannot open '%s': %m\n",
    .unknown_size = MISTAKE == 5 ? "Cannot stat" : nullptr,
    .header = kHeader,
    .summary = &kSummary,
    .allocation = AllocationTime::kBeforeHeader,
    .failed_allocation = ResultOf::kMessage,
    .records = {},
});

}  // namespace
}  // namespace mcserver::decoders
