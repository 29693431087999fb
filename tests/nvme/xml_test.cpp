#include <gmock/gmock.h>

#include "nvme/xml_test.h"

namespace tests {
namespace {

using testing::Values;

// What makes the XML of a kind, and what it makes of no records in state 4.
struct RendererOfKind {
  std::string name;
  Bytes image;
  std::string summary;
  std::string uninitialized;  // in state 1
  int line_of_no_buffer;
  int line_of_too_little_room;

  std::string trace(int line, const std::string &message) const {
    return "<" + name + ": " + std::to_string(line) + "> [" + name + "]" + message + "\n";
  }
};
void PrintTo(const RendererOfKind &renderer, std::ostream *out) { *out << renderer.name; }

class EveryXml : public XmlTest, public testing::WithParamInterface<RendererOfKind> {};

TEST_P(EveryXml, OfNoRecordsIsASummary) {
  EXPECT_EQ(render(GetParam().name, GetParam().image, kSummaryRoom).text, GetParam().summary);

  const Bytes uninitialized = Bytes(GetParam().image).put(0, Bytes().u8(1));
  EXPECT_EQ(render(GetParam().name, uninitialized, kSummaryRoom).text, GetParam().uninitialized);
}

TEST_P(EveryXml, IsRefusedWithTooLittleRoom) {
  trace_at(3);

  EXPECT_EQ(render(GetParam().name, GetParam().image, kSummaryRoom - 1).size, 0u);

  EXPECT_EQ(trace(), GetParam().trace(GetParam().line_of_too_little_room,
                                      "Buffer passed in to generate xml is smaller than required"));
}

TEST_P(EveryXml, WithoutABufferIsTracedAndLeavesTheSizeAlone) {
  uint32_t size = kSummaryRoom;
  char out[kSummaryRoom];
  trace_at(3);

  renderer(GetParam().name)(GetParam().image.data(), nullptr, &size);
  renderer(GetParam().name)(GetParam().image.data(), out, nullptr);

  EXPECT_EQ(size, kSummaryRoom);
  const std::string line = GetParam().trace(GetParam().line_of_no_buffer, "No buffer passed in to generate xml");
  EXPECT_EQ(trace(), line + line);
}

TEST_P(EveryXml, ComparesTheRoomUnsigned) {
  std::vector<char> out(kSummaryRoom);
  uint32_t size = 0x80000000;

  renderer(GetParam().name)(GetParam().image.data(), out.data(), &size);

  EXPECT_EQ(std::string(out.data()), GetParam().summary);
  EXPECT_EQ(size, GetParam().summary.size());
}

TEST_P(EveryXml, OfANullImageIsNone) {
  uint32_t size = kSummaryRoom;
  char out[kSummaryRoom];

  renderer(GetParam().name)(nullptr, out, &size);

  EXPECT_EQ(size, 0u);
}

INSTANTIATE_TEST_SUITE_P(, EveryXml,
                         Values(RendererOfKind{"xmlize_nvme_controller", nvme_controller_image(4, {}),
                                               "<NVME-ctlr-summary count=\"0\" state=\"Main_Power\" />",
                                               "<NVME-ctlr-summary count=\"0\" state=\"Uninitialized\" />", 134, 139},
                                RendererOfKind{"xmlize_nvme_phy_drive", nvme_drive_image(4, {}),
                                               "<NVME-phy-drive-summary count=\"0\" state=\"Main_Power\" />",
                                               "<NVME-phy-drive-summary count=\"0\" state=\"Uninitialized\" />", 86,
                                               91}));

}  // namespace
}  // namespace tests
