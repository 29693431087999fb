#include <gmock/gmock.h>

#include "nvme/xml_test.h"

namespace tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class NvmeControllerXml : public XmlTest {
 protected:
  std::string controllers(uint8_t state, const std::vector<Bytes> &records) {
    return render("xmlize_nvme_controller", nvme_controller_image(state, records), room_for(records.size())).text;
  }
};

const NvmeController kSwitch{
    .name = "SW-1", .type = "NVME-MSWITCH", .switch_status = "Optimal", .link_status = "Link degraded"};

constexpr char kSwitchFields[] =
    "vendor-id=\"VEND\" product-id=\"SWITCH48\" component-id=\"abcd\" product-revision=\"ab\" p2p-vendor-id=\"1234\" "
    "p2p-device-id=\"5678\" running-firmware-version=\"1.2.3\" pending-firmware-version=\"1.2.4\" "
    "switch-temperature=\"45\" ";

TEST_F(NvmeControllerXml, ASwitchWithADegradedLinkIsOneLine) {
  EXPECT_EQ(controllers(4, {kSwitch.stored()}),
            "<NVME-ctlr-summary count=\"1\" state=\"Main_Power\" /><NVME-ctlr controller-name=\"SW-1\" "
            "controller-type=\"NVME-MSWITCH\" status=\"Optimal\" drive-count=\"4\" vendor-id=\"VEND\" "
            "product-id=\"SWITCH48\" component-id=\"abcd\" product-revision=\"ab\" p2p-vendor-id=\"1234\" "
            "p2p-device-id=\"5678\" running-firmware-version=\"1.2.3\" pending-firmware-version=\"1.2.4\" "
            "switch-temperature=\"45\" switch-status=\"Optimal\" link-status=\"Moderate_Fault\" "
            "link-status-desc=\"Link degraded\" />");
}

TEST_F(NvmeControllerXml, APlainControllerEndsAfterItsDriveCount) {
  EXPECT_EQ(controllers(3, {NvmeController().stored()}),
            "<NVME-ctlr-summary count=\"1\" state=\"Aux_Power\" /><NVME-ctlr controller-name=\"NVME-C1\" "
            "controller-type=\"NVME-CTLR\" status=\"Optimal\" drive-count=\"4\" />");
}

TEST_F(NvmeControllerXml, RecordsStandInTheImagesOrder) {
  EXPECT_EQ(controllers(4, {NvmeController{.name = "B"}.stored(), NvmeController{.name = "A"}.stored()}),
            controller_summary(2) + plain_controller_xml("B") + plain_controller_xml("A"));
}

TEST_F(NvmeControllerXml, TwelveCharactersMakeASwitch) {
  EXPECT_THAT(controllers(4, {NvmeController{.type = "NVME-MSWITCH-X"}.stored()}), HasSubstr(kSwitchFields));
  EXPECT_THAT(controllers(4, {NvmeController{.type = "NVME-MSWITC"}.stored()}), EndsWith("drive-count=\"4\" />"));
  EXPECT_THAT(controllers(4, {NvmeController{.type = "nvme-mswitch"}.stored()}), EndsWith("drive-count=\"4\" />"));
}

TEST_F(NvmeControllerXml, AStatusThatBeginsWithOptimalIsShownAsItIs) {
  NvmeController controller = kSwitch;
  controller.switch_status = "Optimal, running";
  controller.link_status = "Optimally";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-temperature=\"45\" switch-status=\"Optimal, running\" link-status=\"Optimally\" />"));
}

TEST_F(NvmeControllerXml, SevenCharactersMakeItOptimal) {
  NvmeController controller = kSwitch;
  controller.switch_status = "Optimax";
  controller.link_status = "Optima";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-status=\"Severe_Fault\" switch-status-desc=\"Optimax\" link-status=\"Moderate_Fault\" "
                       "link-status-desc=\"Optima\" />"));
}

TEST_F(NvmeControllerXml, TheTwoFaultsHaveDifferentWords) {
  NvmeController controller = kSwitch;
  controller.switch_status = "";
  controller.link_status = "optimal";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-status=\"Severe_Fault\" switch-status-desc=\"\" link-status=\"Moderate_Fault\" "
                       "link-status-desc=\"optimal\" />"));
}

TEST_F(NvmeControllerXml, AValueWithoutANameIsEmpty) {
  for (const uint8_t status : {uint8_t{7}, uint8_t{8}, uint8_t{255}})
    EXPECT_EQ(controllers(static_cast<uint8_t>(status - 2), {NvmeController{.status = status}.stored()}),
              controller_summary(1, "") + plain_controller_xml("NVME-C1", ""));
}

TEST_F(NvmeControllerXml, ATextNeverRunsOutOfItsRecord) {
  NvmeController controller = kSwitch;
  controller.link_status = std::string(64, 'L');

  EXPECT_THAT(controllers(4, {controller.stored(), NvmeController().stored()}),
              EndsWith("link-status-desc=\"" + std::string(64, 'L') + "\" />" + plain_controller_xml("NVME-C1")));
}

}  // namespace
}  // namespace tests
