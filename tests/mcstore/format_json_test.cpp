#include <gtest/gtest.h>

#include "mcstore/format.h"

namespace tests {
namespace {

using mcstore::ParsedReply;
using mcstore::RawValue;

TEST(FormatJson, IsValidWhateverATextHolds) {
  ParsedReply reply;
  reply.devices.push_back({.values = {{"name", RawValue("\"\\\n\xFF\xC3\xA9"), {}}}});

  EXPECT_EQ(format_json(mcstore::kind_named("expanders"), reply),
            "{\n"
            "  \"format\": 1,\n"
            "  \"kind\": \"expanders\",\n"
            "  \"simulated\": false,\n"
            "  \"records\": [\n"
            "    {\n"
            "      \"name\": \"\\\"\\\\\\n\xEF\xBF\xBD\xC3\xA9\"\n"
            "    }\n"
            "  ]\n"
            "}\n");
}

TEST(FormatJson, KeepsTheSignAndTheWidthOfNumbers) {
  ParsedReply reply;
  reply.state = RawValue(UINT64_MAX);
  reply.devices.push_back({.values = {{"smallest", RawValue(INT64_MIN), {}}}});

  const std::string json = format_json(mcstore::kind_named("expanders"), reply);

  EXPECT_NE(json.find("\"subsystem_state\": 18446744073709551615,"), json.npos);
  EXPECT_NE(json.find("\"smallest\": -9223372036854775808\n"), json.npos);
}

}  // namespace
}  // namespace tests
