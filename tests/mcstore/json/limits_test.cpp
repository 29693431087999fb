#include <gtest/gtest.h>

#include "host/bytes.h"
#include "mcstore/json/store_content.h"

namespace tests {
namespace {

using mcstore::parse_inventory;

std::string json_of_empty(const std::string &kind, size_t count) {
  std::string devices;
  for (size_t i = 0; i < count; ++i) devices += i == 0 ? "{}" : ",{}";
  return R"({"format": 2, "kinds": [{"kind": ")" + kind + R"(", "devices": [)" + devices + "]}]}";
}

std::string refusal_of_inventory(const std::string &json) {
  try {
    parse_inventory(json);
  } catch (const mcstore::InventoryError &error) {
    return error.what();
  }
  return "(accepted)";
}

struct Limit {
  const char *kind;
  size_t greatest;
};

class Limits : public testing::TestWithParam<Limit> {};

TEST_P(Limits, AreReached) {
  EXPECT_EQ(refusal_of_inventory(json_of_empty(GetParam().kind, GetParam().greatest)), "(accepted)");
}

TEST_P(Limits, AreNotPassed) {
  const auto &[kind, greatest] = GetParam();

  EXPECT_EQ(refusal_of_inventory(json_of_empty(kind, greatest + 1)),
            std::string(kind) + ".devices: has " + std::to_string(greatest + 1) +
                " devices: readers of the file take " + std::to_string(greatest) + " at most");
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Limits,
                         testing::Values(Limit{"controllers", 255}, Limit{"drives", 65535},
                                         Limit{"virtual-drives", 255}, Limit{"bbus", 255}),
                         [](const auto &instance) {
                           std::string name = instance.param.kind;
                           std::erase(name, '-');
                           return name;
                         });

TEST(DriveCounts, AreFilledIn) {
  EXPECT_EQ(Bytes(parse_inventory(json_of_empty("drives", 300)).stores.back().bytes).slice(0, 4),
            Bytes::hex("2c 01 00 00"));
  EXPECT_EQ(Bytes(parse_inventory(json_of_empty("nvme-drives", 2)).stores.back().bytes).slice(0, 5),
            Bytes::hex("02 00 00 00 00"));
}

}  // namespace
}  // namespace tests
