#include "mcstore/kinds/kind.h"

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

// What a delta's record of a gone device shows in that field: a status as its word, another code as a number.
std::string shown_gone_value(std::span<const Field> fields, const records::GoneMark &gone) {
  if (gone.field.empty()) return {};
  const Field &field = fields[mcserver::find_row(fields, gone.field)];
  if (field.type != mcserver::FieldType::kStatus) return std::to_string(gone.value);
  return std::ranges::find(field.meaning.words, gone.value, &mcserver::Word::value)->text;
}

// Completes what is the tool's own with what stands beside the kind's record table.
void take_facts(Kind &kind, const records::KindFacts &facts) {
  kind.name = facts.name;
  kind.lock_path = facts.lock_path;
  kind.store_path = facts.store_path;
  kind.greatest_count = facts.greatest_count;
  for (const mcserver::IdentityMember &member : facts.identity) kind.identity.emplace_back(member.name);
  kind.gone_field = facts.gone.field;
  kind.gone_text = shown_gone_value(kind.fields, facts.gone);
  for (const Field &field : kind.store_header)
    (field.meaning.words.empty() ? kind.stored_count : kind.stored_state) = field;
}

Kind controllers() {
  Kind kind = {
      .title = "RAID controllers",
      .full_entry_point = "mc_get_store_ctrls",
      .delta_entry_point = "mc_delta_store_ctrls",
      .decoder = "list_controllers",
      .printer = "print_ctlrinfo",
      .store_header = records::kControllerFileHeader,
      .record_size = sizeof(StorCtlrInfo),
      .fields = records::kController,
      .layout = layout_of<records::kControllerReplyHeader>(),
      .prefix = "",
      .device_name = "c{index}",
      .place = "{controller}",
      .model = "product_name",
      .temperature = "controller_temperature",
  };
  take_facts(kind, records::kControllerFacts);
  return kind;
}

Kind drives() {
  Kind kind = {
      .title = "Physical drives",
      .full_entry_point = "mc_get_store_phydrives",
      .delta_entry_point = "mc_delta_store_phydrives",
      .decoder = "list_physical_drives",
      .printer = "print_pdinfo",
      .store_header = records::kDriveFileHeader,
      .record_size = sizeof(StorPhyDriveInfo),
      .fields = records::kDrive,
      .layout = layout_of<records::kDriveReplyHeader>(),
      .prefix = "",
      .device_name = "c{controller_index}/e{enclosure_device_id}/s{slot_num}",
      .place = "enclosure {enclosure_device_id}, slot {slot_num}",
      .model = "product_id",
      .capacity = "raw_size",
      .temperature = "temperature",
  };
  take_facts(kind, records::kDriveFacts);
  return kind;
}

Kind bbus() {
  Kind kind = {
      .title = "Battery backup units",
      .full_entry_point = "mc_get_store_bbu",
      .delta_entry_point = "mc_delta_store_bbu",
      .decoder = "list_bbus",
      .printer = "print_bbuInfo",
      .record_size = sizeof(StorBbuInfo),
      .fields = records::kBbuBattery,
      .variant = Variant{.flag = records::kBbuBattery[row_of(records::kBbuBattery, "capacitor")],
                         .fields = records::kBbuCapacitor},
      .layout = layout_of<records::kBbuReplyHeader>(),
      .prefix = "bbu ",
      .device_name = "c{controller_index}",
      .place = "controller {controller_index}",
      .model = "device_name",
      .temperature = "temperature",
  };
  take_facts(kind, records::kBbuFacts);
  return kind;
}

Kind virtual_drives() {
  Kind kind = {
      .title = "Virtual drives",
      .full_entry_point = "mc_get_store_virtdrives",
      .delta_entry_point = "mc_delta_store_virtdrives",
      .decoder = "list_virtual_drives",
      .printer = "print_vdinfo",
      .record_size = sizeof(StorVirtDriveInfo),
      .fields = records::kVirtualDrive,
      .layout = layout_of<records::kVirtualDriveReplyHeader>(),
      .prefix = "vd ",
      .device_name = "c{controller_index}/{target_id}",
      .place = "controller {controller_index}",
      .model = "name",
      .capacity = "size",
  };
  take_facts(kind, records::kVirtualDriveFacts);
  return kind;
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
      .lock_path = records::kRaidLockPath,
      .record_size = kData[0].width,
      .fields = kData,
      .layout = layout_of<records::kExpanderReplyHeader>(),
      .identity = {"data"},
      .prefix = "expander ",
      .device_name = "{#}",
      .place = "",
      .model = "data",
  };
}

Kind nvme_controllers() {
  Kind kind = {
      .title = "NVMe controllers and switches",
      .full_entry_point = "mc_get_nvme_controller",
      .delta_entry_point = "mc_event_nvme_controller",
      .decoder = "list_nvme_controllers",
      .printer = "print_nvme_ctlrinfo",
      .store_header = records::kNvmeControllerFileHeader,
      .record_size = sizeof(NvmeCtlrInfo),
      .fields = records::kNvmeController,
      .prefix = "nvmectlr ",
      .device_name = "{controller_name}",
      .place = "{controller_type}",
      .model = "product_id",
      .temperature = "switch_temperature",
  };
  take_facts(kind, records::kNvmeControllerFacts);
  return kind;
}

Kind nvme_drives() {
  Kind kind = {
      .title = "NVMe drives",
      .full_entry_point = "mc_get_nvme_phy_drive",
      .delta_entry_point = "mc_event_nvme_phy_drive",
      .decoder = "list_nvme_physical_drives",
      .printer = "print_nvme_pdinfo",
      .store_header = records::kNvmeDriveFileHeader,
      .record_size = sizeof(NvmePhyDriveInfo),
      .fields = records::kNvmeDrive,
      .prefix = "nvme ",
      .device_name = "{smbios_pcislotname}",
      .place = "at {controller_name}",
      .model = "product_name",
      .temperature = "temperature",
  };
  take_facts(kind, records::kNvmeDriveFacts);
  return kind;
}

}  // namespace

std::span<const Field> fields_of(const Kind &kind, std::span<const uint8_t> record) {
  return kind.variant && record[kind.variant->flag.offset] != 0 ? kind.variant->fields : kind.fields;
}

std::vector<const Field *> every_field(const Kind &kind) {
  std::vector<const Field *> fields;
  for (const Field &field : kind.fields) fields.push_back(&field);
  if (!kind.variant) return fields;
  for (const Field &field : kind.variant->fields)
    if (mcserver::find_row(kind.fields, field.name) == kind.fields.size()) fields.push_back(&field);
  return fields;
}

const std::vector<Kind> &kinds() {
  static const std::vector<Kind> all = {controllers(), drives(),           virtual_drives(), bbus(),
                                        expanders(),   nvme_controllers(), nvme_drives()};
  return all;
}

const Kind *find_kind(std::string_view name) {
  const auto kind = std::ranges::find(kinds(), name, &Kind::name);
  return kind == kinds().end() ? nullptr : &*kind;
}

const Kind &kind_named(std::string_view name) { return *find_kind(name); }

}  // namespace mcstore
