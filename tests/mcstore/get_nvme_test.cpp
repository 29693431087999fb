#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "nvme/nvme_bytes.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class GetNvme : public McstoreTest {
 protected:
  void store_drives(const std::vector<NvmeDrive> &drives) {
    files.write(kNvmeControllerStore, Bytes().u8(4));
    files.write(kNvmeDriveStore, nvme_drive_file(4, drives));
  }
  void store_controllers(const std::vector<NvmeController> &controllers) {
    files.write(kNvmeControllerStore, nvme_controller_file(4, controllers));
  }
};

const NvmeController kSwitch{.name = "SW-1", .type = "NVME-MSWITCH", .link_status = "Link degraded"};

TEST_F(GetNvme, JsonHasTypedValues) {
  store_drives({NvmeDrive()});

  const ShownJson json(mcstore_here("get nvme-drives --format json").out);

  EXPECT_EQ(json, ShownJson(R"({"format": 1, "kind": "nvme-drives", "simulated": false,
      "subsystem_state": "Main_Power", "records": [{"controller_name": "NVME-C1", "smbios_pcislotname": "FRONT-NVME-1",
      "product_name": "NVMe SSD 1.6TB", "status": "Optimal", "serial_number": "SN000123", "firmware_version": "FW1.0",
      "vendor": "VENDOR", "vendor_id": 4660, "device_id": 22136, "subvendor_id": 4660, "subdevice_id": 39612,
      "temperature": 35, "status_description": "Healthy", "drive_life_used_percent": 2, "life_left_in_days": 3650,
      "percent_power_on_hours": 10, "performance_percent": 100, "throttle_threshold": 70, "shutdown_threshold": 80}]})"));
}

TEST_F(GetNvme, ASwitchHasMoreFieldsThanAController) {
  store_controllers({NvmeController{.name = "A"}, kSwitch});

  const ShownJson json(mcstore_here("get nvme-controllers --format json").out);
  const std::string table = mcstore_here("get nvme-controllers").out;

  EXPECT_EQ(json["records"][0].size(), 4u);
  EXPECT_EQ(json["records"][1].size(), 16u);
  EXPECT_EQ(json["records"][1]["component_id"], 0xABCD);
  EXPECT_EQ(json["records"][1]["link_status"], "Moderate_Fault");
  EXPECT_EQ(json["records"][1]["link_status_desc"], "Link degraded");
  EXPECT_THAT(table, StartsWith("NVMe controllers and switches: 2, subsystem state Main_Power\n"
                                "\n"
                                "                          A          SW-1\n"
                                "controller_name           A          SW-1\n"));
  EXPECT_THAT(table, HasSubstr("\nlink_status_desc                     Link degraded\n"));
}

TEST_F(GetNvme, XmlIsShownAsItCame) {
  store_controllers({NvmeController()});

  EXPECT_EQ(mcstore_here("get nvme-controllers --format xml").out,
            controller_summary(1) + plain_controller_xml("NVME-C1") + "\n");
}

TEST_F(GetNvme, OnlyNvmeIsReportedInXml) {
  const Outcome outcome = mcstore_here("get controllers --format xml");

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err, "mcstore: --format: controllers are not reported in XML\n");
}

TEST_F(GetNvme, MalformedXmlIsShownAsItCameWithTheReason) {
  store_drives({NvmeDrive{.vendor = "a\"b"}});

  for (const char *format : {"table", "json"}) {
    const Outcome outcome = mcstore_here(std::string("get nvme-drives --format ") + format);
    EXPECT_EQ(outcome.exit_code, 1);
    EXPECT_EQ(outcome.out, drive_summary(1) + NvmeDrive{.vendor = "a\"b"}.xml() + "\n");
    EXPECT_THAT(outcome.err, StartsWith("mcstore: the reply is not well-formed XML: "));
  }
}

TEST_F(GetNvme, CollectWritesBothStores) {
  files.write_text("/inventory.json", R"({
      "nvme-controllers": {"subsystem_state": 4, "records": [{"controller_name": "NVME-C1", "mod_timestamp": 1,
          "status": 1, "drive_count": 4, "controller_type": "NVME-CTLR", "vendor_id": "VEND", "product_id": "SWITCH48",
          "component_id": 43981, "product_revision": "ab", "p2p_vendor_id": 4660, "p2p_device_id": 22136,
          "running_firmware_version": "1.2.3", "pending_firmware_version": "1.2.4", "switch_temperature": 45,
          "switch_status": "Optimal", "link_status": "Optimal"}]},
      "nvme-drives": {"noofDrives": 2, "nvme_subsystem_info": 4, "records": [{"smbios_pcislotname": "FRONT-NVME-1",
          "controller_name": "NVME-C1", "status": 1, "product_name": "NVMe SSD 1.6TB", "serial_number": "SN000123",
          "firmware_version": "FW1.0", "vendor": "VENDOR", "vendor_id": 4660, "device_id": 22136, "subvendor_id": 4660,
          "subdevice_id": 39612, "temperature": 35, "status_description": "Healthy", "drive_life_used_percent": 2,
          "life_left_in_days": 3650, "performance_percent": 100, "percent_power_on_hours": 10,
          "throttle_threshold": 70, "shutdown_threshold": 80, "mod_timestamp": 1}]}})");

  EXPECT_EQ(mcstore_here("collect " + files.real("/inventory.json")).exit_code, 0);

  const Bytes controllers = nvme_controller_file(4, {NvmeController()});
  const Bytes drives = nvme_drive_file(2, 4, {NvmeDrive()});
  EXPECT_EQ(files.read(kNvmeControllerStore), std::string(controllers.data(), controllers.data() + controllers.size()));
  EXPECT_EQ(files.read(kNvmeDriveStore), std::string(drives.data(), drives.data() + drives.size()));
}

TEST_F(GetNvme, WatchTellsNewAndRepeated) {
  store_controllers({NvmeController()});

  EXPECT_EQ(mcstore_here("watch nvme-controllers --interval 0 --count 2").out,
            "call 1: 1 new\n  new       NVME-C1\ncall 2: nothing changed\n");
}

}  // namespace
}  // namespace tests
