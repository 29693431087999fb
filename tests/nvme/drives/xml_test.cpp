#include <gmock/gmock.h>

#include "nvme/xml_test.h"

namespace tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class NvmeDriveXml : public XmlTest {
 protected:
  std::string drives(uint8_t state, const std::vector<Bytes> &records) {
    return render("xmlize_nvme_phy_drive", nvme_drive_image(state, records), room_for(records.size())).text;
  }
};

TEST_F(NvmeDriveXml, ADriveIsOneLine) {
  EXPECT_EQ(drives(4, {NvmeDrive().stored()}),
            "<NVME-phy-drive-summary count=\"1\" state=\"Main_Power\" /><NVME-phy-drive controller-name=\"NVME-C1\" "
            "smbios-pcislotname=\"FRONT-NVME-1\" product-name=\"NVMe SSD 1.6TB\" status=\"Optimal\" "
            "serial-number=\"SN000123\" firmware-version=\"FW1.0\" vendor=\"VENDOR\" vendor-id=\"0x1234\" "
            "device-id=\"0x5678\" subvendor-id=\"0x1234\" subdevice-id=\"0x9abc\" temperature=\"35\" "
            "status-description=\"Healthy\" drive-life-used-percent=\"2\" life-left-in-days=\"3650\" "
            "percent-power-on-hours=\"10\" performance-percent=\"100\" throttle-threshold=\"70\" "
            "shutdown-threshold=\"80\" />");
}

TEST_F(NvmeDriveXml, RecordsStandInTheImagesOrder) {
  EXPECT_EQ(drives(4, {NvmeDrive{.slot = "B"}.stored(), NvmeDrive{.slot = "A"}.stored()}),
            drive_summary(2) + NvmeDrive{.slot = "B"}.xml() + NvmeDrive{.slot = "A"}.xml());
}

TEST_F(NvmeDriveXml, AValueWithoutANameIsEmpty) {
  EXPECT_EQ(drives(5, {NvmeDrive{.status = 7}.stored()}), drive_summary(1, "") + NvmeDrive().xml(""));
}

TEST_F(NvmeDriveXml, NumbersAreUnsigned) {
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

TEST_F(NvmeDriveXml, ATextThatFillsItsFieldRunsOn) {
  NvmeDrive drive{.slot = "0123456789ABCDEF"};

  EXPECT_THAT(drives(4, {drive.stored()}), HasSubstr("smbios-pcislotname=\"0123456789ABCDEFNVME-C1\" "));
}

TEST_F(NvmeDriveXml, HostileCharactersAreInsertedAsTheyAre) {
  EXPECT_EQ(drives(4, {NvmeDrive{.vendor = "\"/><a b='&\n%s"}.stored()}),
            drive_summary(1) + NvmeDrive{.vendor = "\"/><a b='&\n%s"}.xml());
}

// Every text of the record without a NUL, so that each runs on to the record's end.
Bytes endless_drive() { return Bytes::repeated(kNvmeDriveSize, 'x'); }

TEST_F(NvmeDriveXml, ATextBeyondTheBudgetIsCut) {
  const Rendered rendered = render("xmlize_nvme_phy_drive", nvme_drive_image(4, {endless_drive()}), room_for(1));

  EXPECT_EQ(rendered.size, room_for(1));
  const std::string start = drive_summary(1) + "<NVME-phy-drive controller-name=\"xxxxxxxx";
  EXPECT_THAT(rendered.text, testing::StartsWith(start));
  EXPECT_EQ(rendered.text.back(), '\0');
  EXPECT_EQ(rendered.text.find('\0'), room_for(1) - 1);
}

TEST_F(NvmeDriveXml, ATextIsWholeAsLongAsItFitsWithItsTerminator) {
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

    EXPECT_EQ(text, whole.size() < room_for(1) ? whole : whole.substr(0, room_for(1) - 1) + '\0') << whole.size();
  }
  EXPECT_THAT(lengths, testing::IsSupersetOf({room_for(1) - 2, room_for(1) - 1, room_for(1), room_for(1) + 1}));
}

TEST_F(NvmeDriveXml, ALongRecordMayUseTheRoomOfAShortOne) {
  const std::string text = drives(4, {endless_drive(), NvmeDrive().stored(), NvmeDrive().stored()});

  EXPECT_THAT(text, EndsWith(NvmeDrive().xml()));
}

TEST_F(NvmeDriveXml, TooLittleRoomForARecordIsRefused) {
  EXPECT_EQ(render("xmlize_nvme_phy_drive", nvme_drive_image(4, {NvmeDrive().stored()}), room_for(1) - 1).size, 0u);
}

}  // namespace
}  // namespace tests
