#include "mcstore/kind.h"

#include <algorithm>

#include "mcserver_storage.h"
#include "records/bbu_record.h"
#include "records/controller_record.h"
#include "records/drive_record.h"
#include "records/nvme_controller_record.h"
#include "records/nvme_drive_record.h"
#include "records/reply_headers.h"
#include "records/virtual_drive_record.h"

namespace mcstore {
namespace {

namespace records = mcserver::records;

constexpr std::string_view kNvmeLock = "/var/nvmectlr_info";

// What the tool needs of a header: each has a count and a record size, some have a state.
template <const auto &header>
BinaryLayout layout_of() {
  const auto state = std::ranges::find(header, std::string_view("state"), &Field::name);
  return {.header = header,
          .header_size = header.back().offset + header.back().width,
          .count = header[row_of(header, "count")],
          .record_size = header[row_of(header, "record_size")],
          .state = state == header.end() ? std::nullopt : std::optional(*state)};
}

Kind controllers() {
  return {
      .name = "controllers",
      .title = "RAID controllers",
      .full_entry_point = "mc_get_store_ctrls",
      .delta_entry_point = "mc_delta_store_ctrls",
      .decoder = "list_controllers",
      .printer = "print_ctlrinfo",
      .lock_path = kStorageLock,
      .store_path = "/var/storctlr_info",
      .store_header = records::kControllerFileHeader,
      .record_size = sizeof(StorCtlrInfo),
      .fields = records::kController,
      .variant = {},
      .layout = layout_of<records::kControllerReplyHeader>(),
      .identity = {"index", "serial_number"},
      .label = "controller",
      .gone_field = "controller_status",
      .gone_text = "4",
  };
}

Kind drives() {
  return {
      .name = "drives",
      .title = "Physical drives",
      .full_entry_point = "mc_get_store_phydrives",
      .delta_entry_point = "mc_delta_store_phydrives",
      .decoder = "list_physical_drives",
      .printer = "print_pdinfo",
      .lock_path = kStorageLock,
      .store_path = "/var/storphydrive_info",
      .store_header = records::kDriveFileHeader,
      .record_size = sizeof(StorPhyDriveInfo),
      .fields = records::kDrive,
      .variant = {},
      .layout = layout_of<records::kDriveReplyHeader>(),
      .identity = {"controller_index", "slot_num", "serial_num"},
      .label = "serial_num",
      .gone_field = "status",
      .gone_text = "14",
  };
}

Kind bbus() {
  return {
      .name = "bbus",
      .title = "Battery backup units",
      .full_entry_point = "mc_get_store_bbu",
      .delta_entry_point = "mc_delta_store_bbu",
      .decoder = "list_bbus",
      .printer = "print_bbuInfo",
      .lock_path = kStorageLock,
      .store_path = "/var/storBBU_info",
      .store_header = {},
      .record_size = sizeof(StorBbuInfo),
      .fields = records::kBbuBattery,
      .variant = Variant{.flag = records::kBbuBattery[row_of(records::kBbuBattery, "capacitor")],
                         .fields = records::kBbuCapacitor},
      .layout = layout_of<records::kBbuReplyHeader>(),
      .identity = {"controller_index"},
      .label = "device_name",
      .gone_field = {},
      .gone_text = {},
  };
}

Kind virtual_drives() {
  return {
      .name = "virtual-drives",
      .title = "Virtual drives",
      .full_entry_point = "mc_get_store_virtdrives",
      .delta_entry_point = "mc_delta_store_virtdrives",
      .decoder = "list_virtual_drives",
      .printer = "print_vdinfo",
      .lock_path = kStorageLock,
      .store_path = "/var/storvirtdrive_info",
      .store_header = {},
      .record_size = sizeof(StorVirtDriveInfo),
      .fields = records::kVirtualDrive,
      .variant = {},
      .layout = layout_of<records::kVirtualDriveReplyHeader>(),
      .identity = {"guid"},
      .label = "name",
      .gone_field = "status",
      .gone_text = "6",
  };
}

// They have neither a store file nor a known record: there is only the reply of a simulation.
Kind expanders() {
  using mcserver::ByteOrder;
  using mcserver::FieldType;
  static constexpr Field kData[] = {{.name = "data",
                                     .offset = 0,
                                     .width = 84,
                                     .type = FieldType::kBytes,
                                     .label = "%s",
                                     .order = ByteOrder::kAsStored}};
  return {
      .name = "expanders",
      .title = "SAS expanders",
      .full_entry_point = "mc_get_store_sasexpanders",
      .delta_entry_point = "mc_delta_store_sasexpanders",
      .decoder = {},
      .printer = {},
      .lock_path = kStorageLock,
      .store_path = {},
      .store_header = {},
      .record_size = kData[0].width,
      .fields = kData,
      .variant = {},
      .layout = layout_of<records::kExpanderReplyHeader>(),
      .identity = {"data"},
      .label = "data",
      .gone_field = {},
      .gone_text = {},
  };
}

Kind nvme_controllers() {
  return {
      .name = "nvme-controllers",
      .title = "NVMe controllers and switches",
      .full_entry_point = "mc_get_nvme_controller",
      .delta_entry_point = "mc_event_nvme_controller",
      .decoder = "list_nvme_controllers",
      .printer = "print_nvme_ctlrinfo",
      .lock_path = kNvmeLock,
      .store_path = "/var/nvmectlr_info",
      .store_header = records::kNvmeControllerFileHeader,
      .record_size = sizeof(NvmeCtlrInfo),
      .fields = records::kNvmeController,
      .variant = {},
      .layout = {},
      .identity = {"controller_name"},
      .label = "controller_name",
      .gone_field = "status",
      .gone_text = "Deleted",
  };
}

Kind nvme_drives() {
  return {
      .name = "nvme-drives",
      .title = "NVMe drives",
      .full_entry_point = "mc_get_nvme_phy_drive",
      .delta_entry_point = "mc_event_nvme_phy_drive",
      .decoder = "list_nvme_physical_drives",
      .printer = "print_nvme_pdinfo",
      .lock_path = kNvmeLock,
      .store_path = "/var/nvmephydrive_info",
      .store_header = records::kNvmeDriveFileHeader,
      .record_size = sizeof(NvmePhyDriveInfo),
      .fields = records::kNvmeDrive,
      .variant = {},
      .layout = {},
      .identity = {"smbios_pcislotname", "serial_number"},
      .label = "smbios_pcislotname",
      .gone_field = "status",
      .gone_text = "Deleted",
  };
}

}  // namespace

std::span<const Field> fields_of(const Kind &kind, std::span<const uint8_t> record) {
  return kind.variant && record[kind.variant->flag.offset] != 0 ? kind.variant->fields : kind.fields;
}

const std::vector<Kind> &kinds() {
  static const std::vector<Kind> all = {controllers(), drives(),           virtual_drives(), bbus(),
                                        expanders(),   nvme_controllers(), nvme_drives()};
  return all;
}

const Kind &kind_named(std::string_view name) {
  return *std::find_if(kinds().begin(), kinds().end(), [&](const Kind &kind) { return kind.name == name; });
}

}  // namespace mcstore
