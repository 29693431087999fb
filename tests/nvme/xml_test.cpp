#include <gmock/gmock.h>

#include "nvme/nvme_test.h"

namespace tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

using Renderer = void(const uint8_t *image, char *out, uint32_t *size);

struct Rendered {
  std::string text;
  uint32_t size;
};

class Xml : public PluginTest {
 protected:
  // Renders into a buffer of exactly that many bytes.
  Rendered render(const std::string &renderer, const Bytes &image, uint32_t capacity) {
    const std::vector<uint8_t> exactly(image.data(), image.data() + image.size());
    std::vector<char> out(capacity, '?');
    uint32_t size = capacity;
    plugin(static_cast<Renderer *>(nullptr), renderer)(exactly.data(), out.data(), &size);
    return {std::string(out.data(), size), size};
  }
  std::string controllers(uint8_t state, const std::vector<Bytes> &records) {
    return render("xmlize_nvme_controller", nvme_controller_image(state, records), capacity(records)).text;
  }
  std::string drives(uint8_t state, const std::vector<Bytes> &records) {
    return render("xmlize_nvme_phy_drive", nvme_drive_image(state, records), capacity(records)).text;
  }
  static uint32_t capacity(const std::vector<Bytes> &records) {
    return static_cast<uint32_t>(records.size()) * 1024 + 100;
  }
};

const NvmeController kLinkedSwitch{
    .name = "SW-1", .type = "NVME-MSWITCH", .switch_status = "Optimal", .link_status = "Link degraded"};

constexpr char kSwitchFields[] =
    "vendor-id=\"VEND\" product-id=\"SWITCH48\" component-id=\"abcd\" product-revision=\"ab\" p2p-vendor-id=\"1234\" "
    "p2p-device-id=\"5678\" running-firmware-version=\"1.2.3\" pending-firmware-version=\"1.2.4\" "
    "switch-temperature=\"45\" ";

TEST_F(Xml, ADriveIsOneLine) {
  EXPECT_EQ(drives(4, {NvmeDrive().stored()}),
            "<NVME-phy-drive-summary count=\"1\" state=\"Main_Power\" /><NVME-phy-drive controller-name=\"NVME-C1\" "
            "smbios-pcislotname=\"FRONT-NVME-1\" product-name=\"NVMe SSD 1.6TB\" status=\"Optimal\" "
            "serial-number=\"SN000123\" firmware-version=\"FW1.0\" vendor=\"VENDOR\" vendor-id=\"0x1234\" "
            "device-id=\"0x5678\" subvendor-id=\"0x1234\" subdevice-id=\"0x9abc\" temperature=\"35\" "
            "status-description=\"Healthy\" drive-life-used-percent=\"2\" life-left-in-days=\"3650\" "
            "percent-power-on-hours=\"10\" performance-percent=\"100\" throttle-threshold=\"70\" "
            "shutdown-threshold=\"80\" />");
}

TEST_F(Xml, ASwitchWithADegradedLinkIsOneLine) {
  EXPECT_EQ(controllers(4, {kLinkedSwitch.stored()}),
            "<NVME-ctlr-summary count=\"1\" state=\"Main_Power\" /><NVME-ctlr controller-name=\"SW-1\" "
            "controller-type=\"NVME-MSWITCH\" status=\"Optimal\" drive-count=\"4\" vendor-id=\"VEND\" "
            "product-id=\"SWITCH48\" component-id=\"abcd\" product-revision=\"ab\" p2p-vendor-id=\"1234\" "
            "p2p-device-id=\"5678\" running-firmware-version=\"1.2.3\" pending-firmware-version=\"1.2.4\" "
            "switch-temperature=\"45\" switch-status=\"Optimal\" link-status=\"Moderate_Fault\" "
            "link-status-desc=\"Link degraded\" />");
}

TEST_F(Xml, APlainControllerEndsAfterItsDriveCount) {
  EXPECT_EQ(controllers(3, {NvmeController().stored()}),
            "<NVME-ctlr-summary count=\"1\" state=\"Aux_Power\" /><NVME-ctlr controller-name=\"NVME-C1\" "
            "controller-type=\"NVME-CTLR\" status=\"Optimal\" drive-count=\"4\" />");
}

TEST_F(Xml, NoRecordsMakeASummaryAlone) {
  EXPECT_EQ(controllers(0, {}), "<NVME-ctlr-summary count=\"0\" state=\"Unknown\" />");
  EXPECT_EQ(drives(1, {}), "<NVME-phy-drive-summary count=\"0\" state=\"Uninitialized\" />");
}

TEST_F(Xml, RecordsStandInTheImagesOrder) {
  EXPECT_EQ(drives(4, {NvmeDrive{.slot = "B"}.stored(), NvmeDrive{.slot = "A"}.stored()}),
            drive_summary(2) + NvmeDrive{.slot = "B"}.xml() + NvmeDrive{.slot = "A"}.xml());
  EXPECT_EQ(controllers(4, {NvmeController{.name = "B"}.stored(), NvmeController{.name = "A"}.stored()}),
            controller_summary(2) + plain_controller_xml("B") + plain_controller_xml("A"));
}

TEST_F(Xml, TwelveCharactersMakeASwitch) {
  EXPECT_THAT(controllers(4, {NvmeController{.type = "NVME-MSWITCH-X"}.stored()}), HasSubstr(kSwitchFields));
  EXPECT_THAT(controllers(4, {NvmeController{.type = "NVME-MSWITC"}.stored()}), EndsWith("drive-count=\"4\" />"));
  EXPECT_THAT(controllers(4, {NvmeController{.type = "nvme-mswitch"}.stored()}), EndsWith("drive-count=\"4\" />"));
}

TEST_F(Xml, AStatusThatBeginsWithOptimalIsShownAsItIs) {
  NvmeController controller = kLinkedSwitch;
  controller.switch_status = "Optimal, running";
  controller.link_status = "Optimally";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-temperature=\"45\" switch-status=\"Optimal, running\" link-status=\"Optimally\" />"));
}

TEST_F(Xml, SevenCharactersMakeItOptimal) {
  NvmeController controller = kLinkedSwitch;
  controller.switch_status = "Optimax";
  controller.link_status = "Optima";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-status=\"Severe_Fault\" switch-status-desc=\"Optimax\" link-status=\"Moderate_Fault\" "
                       "link-status-desc=\"Optima\" />"));
}

TEST_F(Xml, TheTwoFaultsHaveDifferentWords) {
  NvmeController controller = kLinkedSwitch;
  controller.switch_status = "";
  controller.link_status = "optimal";

  EXPECT_THAT(controllers(4, {controller.stored()}),
              EndsWith("switch-status=\"Severe_Fault\" switch-status-desc=\"\" link-status=\"Moderate_Fault\" "
                       "link-status-desc=\"optimal\" />"));
}

TEST_F(Xml, AValueWithoutANameIsEmpty) {
  for (const uint8_t status : {uint8_t{7}, uint8_t{8}, uint8_t{255}})
    EXPECT_EQ(controllers(static_cast<uint8_t>(status - 2), {NvmeController{.status = status}.stored()}),
              controller_summary(1, "") + plain_controller_xml("NVME-C1", ""));
  EXPECT_EQ(drives(5, {NvmeDrive{.status = 7}.stored()}), drive_summary(1, "") + NvmeDrive().xml(""));
}

TEST_F(Xml, NumbersAreUnsigned) {
  const NvmeDrive drive{.vendor_id = 0xFFFF,
                        .device_id = 0,
                        .temperature = 255,
                        .life_used = 200,
                        .life_left = 65535,
                        .performance = 255,
                        .power_on_hours = 254,
                        .throttle = 253,
                        .shutdown = 252};

  EXPECT_EQ(drives(4, {drive.stored()}), drive_summary(1) + drive.xml());
  EXPECT_THAT(drives(4, {drive.stored()}), HasSubstr("vendor-id=\"0xffff\" device-id=\"0x0\" "));
}

TEST_F(Xml, ATextThatFillsItsFieldRunsOn) {
  NvmeDrive drive{.slot = "0123456789ABCDEF"};

  EXPECT_THAT(drives(4, {drive.stored()}), HasSubstr("smbios-pcislotname=\"0123456789ABCDEFNVME-C1\" "));
}

TEST_F(Xml, ATextNeverRunsOutOfItsRecord) {
  NvmeController controller = kLinkedSwitch;
  controller.link_status = std::string(64, 'L');

  EXPECT_THAT(controllers(4, {controller.stored(), NvmeController().stored()}),
              EndsWith("link-status-desc=\"" + std::string(64, 'L') + "\" />" + plain_controller_xml("NVME-C1")));
}

TEST_F(Xml, HostileCharactersAreInsertedAsTheyAre) {
  EXPECT_EQ(drives(4, {NvmeDrive{.vendor = "\"/><a b='&\n%s"}.stored()}),
            drive_summary(1) + NvmeDrive{.vendor = "\"/><a b='&\n%s"}.xml());
}

// Every text of the record without a NUL, so that each runs on to the record's end.
Bytes endless_drive() { return Bytes::repeated(kNvmeDriveSize, 'x'); }

TEST_F(Xml, ATextBeyondTheBudgetIsCut) {
  const Rendered rendered = render("xmlize_nvme_phy_drive", nvme_drive_image(4, {endless_drive()}), 1124);

  EXPECT_EQ(rendered.size, 1124u);
  const std::string start = drive_summary(1) + "<NVME-phy-drive controller-name=\"xxxxxxxx";
  EXPECT_THAT(rendered.text, testing::StartsWith(start));
  EXPECT_EQ(rendered.text.back(), '\0');
  EXPECT_EQ(rendered.text.find('\0'), 1123u);
}

TEST_F(Xml, ATextIsWholeAsLongAsItFitsWithItsTerminator) {
  std::vector<size_t> lengths;
  for (size_t slot_length = 1; slot_length < 16; ++slot_length) {
    NvmeDrive drive{.slot = std::string(slot_length, 's'),
                    .product_name = std::string(81, 'p'),
                    .serial = std::string(31, 'n'),
                    .firmware = std::string(97, 'f'),
                    .vendor = std::string(20, 'v'),
                    .vendor_id = 0x6161,
                    .device_id = 0x6161,
                    .subvendor_id = 0x6161,
                    .subdevice_id = 0x6161,
                    .temperature = 'a',
                    .description = "ddddddddddddddddd"};
    NvmeDrive shown = drive;  // four of the texts run on to the end of the description
    shown.vendor = drive.vendor + "aaaaaaaaa" + drive.description;
    shown.firmware = drive.firmware + shown.vendor;
    shown.serial = drive.serial + shown.firmware;
    shown.product_name = drive.product_name + shown.serial;
    const std::string whole = drive_summary(1) + shown.xml();
    lengths.push_back(whole.size());

    const std::string text = drives(4, {drive.stored()});

    EXPECT_EQ(text, whole.size() < 1124 ? whole : whole.substr(0, 1123) + '\0') << whole.size();
  }
  EXPECT_THAT(lengths, testing::IsSupersetOf({1122u, 1123u, 1124u, 1125u}));
}

TEST_F(Xml, TooLittleRoomIsRefused) {
  trace_at(3);

  EXPECT_EQ(render("xmlize_nvme_phy_drive", nvme_drive_image(4, {NvmeDrive().stored()}), 1123).size, 0u);
  EXPECT_EQ(trace(),
            "<xmlize_nvme_phy_drive: 91> [xmlize_nvme_phy_drive]Buffer passed in to generate xml is smaller than "
            "required\n");
  EXPECT_EQ(render("xmlize_nvme_controller", nvme_controller_image(4, {}), 99).size, 0u);
  EXPECT_EQ(trace(),
            "<xmlize_nvme_controller: 139> [xmlize_nvme_controller]Buffer passed in to generate xml is smaller than "
            "required\n");
  EXPECT_EQ(render("xmlize_nvme_controller", nvme_controller_image(4, {}), 100).text, controller_summary(0));
}

TEST_F(Xml, ANullBufferIsTracedAndLeavesTheSizeAlone) {
  const Bytes image = nvme_drive_image(4, {});
  uint32_t size = 100;
  char out[100];
  trace_at(3);

  PLUGIN(xmlize_nvme_phy_drive)(image.data(), nullptr, &size);
  PLUGIN(xmlize_nvme_phy_drive)(image.data(), out, nullptr);
  PLUGIN(xmlize_nvme_controller)(image.data(), nullptr, &size);
  PLUGIN(xmlize_nvme_controller)(image.data(), out, nullptr);

  EXPECT_EQ(size, 100u);
  EXPECT_EQ(trace(),
            "<xmlize_nvme_phy_drive: 86> [xmlize_nvme_phy_drive]No buffer passed in to generate xml\n"
            "<xmlize_nvme_phy_drive: 86> [xmlize_nvme_phy_drive]No buffer passed in to generate xml\n"
            "<xmlize_nvme_controller: 134> [xmlize_nvme_controller]No buffer passed in to generate xml\n"
            "<xmlize_nvme_controller: 134> [xmlize_nvme_controller]No buffer passed in to generate xml\n");
}

TEST_F(Xml, TheRoomIsComparedUnsigned) {
  std::vector<char> out(100);
  for (const char *renderer : {"xmlize_nvme_phy_drive", "xmlize_nvme_controller"}) {
    const bool drives_too = std::string(renderer) == "xmlize_nvme_phy_drive";
    const Bytes image = drives_too ? nvme_drive_image(4, {}) : nvme_controller_image(4, {});
    uint32_t size = 0x80000000;

    plugin(static_cast<Renderer *>(nullptr), renderer)(image.data(), out.data(), &size);

    EXPECT_EQ(std::string(out.data()), drives_too ? drive_summary(0) : controller_summary(0));
    EXPECT_EQ(size, std::string(out.data()).size());
  }
}

TEST_F(Xml, ALongRecordMayUseTheRoomOfAShortOne) {
  const std::string text = drives(4, {endless_drive(), NvmeDrive().stored(), NvmeDrive().stored()});

  EXPECT_THAT(text, EndsWith(NvmeDrive().xml()));
}

TEST_F(Xml, ANullImageMakesNoText) {
  for (const char *renderer : {"xmlize_nvme_phy_drive", "xmlize_nvme_controller"}) {
    uint32_t size = 100;
    char out[100];

    plugin(static_cast<Renderer *>(nullptr), renderer)(nullptr, out, &size);

    EXPECT_EQ(size, 0u);
  }
}

}  // namespace
}  // namespace tests
