#include <gmock/gmock.h>

#include <vector>

#include "raid/bbus/bbu_test.h"
#include "raid/raid_names.h"

namespace tests {
namespace {

using testing::ElementsAre;

class BbuEntryPoints : public BbuTest {
 protected:
  uint32_t length = kUnwrittenLength;
};

TEST_F(BbuEntryPoints, FullWithoutABufferLeavesTheLengthAlone) {
  files.write_text(kSimulationMarker, "");
  store({bbu_of(0)});
  trace_at(3);

  const int32_t status = PLUGIN(mc_get_store_bbu)(nullptr, nullptr, 65536, &length);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(length, kUnwrittenLength);
  EXPECT_EQ(trace(), "<mc_get_store_bbu: 2465> [mc_get_store_bbu]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(BbuEntryPoints, DeltaWithoutABufferClearsTheLength) {
  store({bbu_of(0)});
  trace_at(3);

  const int32_t status = PLUGIN(mc_delta_store_bbu)(nullptr, nullptr, 65536, &length);

  EXPECT_EQ(status, -35);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(trace(), "<mc_delta_store_bbu: 2551> [mc_delta_store_bbu]buf is NULL\n");
  EXPECT_THAT(calls(), ElementsAre("fprintf", "fflush"));
}

TEST_F(BbuEntryPoints, WithoutABufferRememberNothing) {
  store({bbu_of(0)});
  PLUGIN(mc_get_store_bbu)(nullptr, nullptr, 65536, &length);
  PLUGIN(mc_delta_store_bbu)(nullptr, nullptr, 65536, &length);

  EXPECT_EQ(delta().bytes(), bbu_reply({bbu_of(0)}));
}

TEST_F(BbuEntryPoints, WithoutALengthAreRefused) {
  store({bbu_of(0)});
  std::vector<uint8_t> buffer(1000, kUntouched);

  EXPECT_EQ(PLUGIN(mc_get_store_bbu)(nullptr, buffer.data(), 1000, nullptr), -35);
  EXPECT_EQ(PLUGIN(mc_delta_store_bbu)(nullptr, buffer.data(), 1000, nullptr), -35);
  EXPECT_EQ(PLUGIN(get_store_bbu)(nullptr, buffer.data(), 1000, nullptr, 0), -35);
  EXPECT_EQ(Bytes(buffer), Bytes::repeated(1000, kUntouched));
}

TEST_F(BbuEntryPoints, FullLooksForTheMarkerThenReadsTheStoreFile) {
  store({bbu_of(0)});

  full();

  EXPECT_EQ(calls().at(0), "stat /debug/mctool_storage_debug");
  EXPECT_EQ(calls().at(1), "fopen /var/storctlr_info");
}

}  // namespace
}  // namespace tests
