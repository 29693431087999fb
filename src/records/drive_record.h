// The physical drive record's layout, in the order of its bytes. Byte order, dumps and the tool's columns follow from
// it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kDrive = std::to_array<Field>({
    FIELD(StorPhyDriveInfo, controller_index, "PhyDrive Controller index = %d\n"),
    FIELD(StorPhyDriveInfo, slot_num, "PhyDrive slot num = %d\n"),
    FIELD(StorPhyDriveInfo, lsi_drive_num, "LSI Drive Num = %d\n"),
    FIELD(StorPhyDriveInfo, power_state, "Power State = %d (0: Active, 1: Powersave, 2: Transitioning\n",
          {.words = kPowerStates}),
    FIELD(StorPhyDriveInfo, device_id, "device_id = %d\n"),
    FIELD(StorPhyDriveInfo, enclosure_device_id, "enclosure_device_id = %d\n"),
    FIELD(StorPhyDriveInfo, media_err_count, "Media Err Count = %d\n"),
    FIELD(StorPhyDriveInfo, other_err_count, "Other Err Count = %d\n"),
    FIELD(StorPhyDriveInfo, predictive_failure_count, "Predictive Failure Count = %d\n"),
    flag(FIELD(StorPhyDriveInfo, disabled_for_removal, "Disabled for removal = %s\n")),
    FIELD(StorPhyDriveInfo, block_size, "Block Size = %d\n", {.unit = Unit::kBytes}),
    FIELD(StorPhyDriveInfo, raw_size, "Raw Size = %lld\n", {.unit = Unit::kBytes}),
    FIELD(StorPhyDriveInfo, non_coerced_size, "Non-coerced size = %lld\n", {.unit = Unit::kBytes}),
    FIELD(StorPhyDriveInfo, coerced_size, "Coerced Size = %lld\n", {.unit = Unit::kBytes}),
    FIELD(StorPhyDriveInfo, link_speed, "Link speed = %d (0: UnKnown, 1: 1.5GB, 2: 3GB, 3: 6GB, 4: 12GB)\n",
          {.words = kLinkSpeeds}),
    FIELD(StorPhyDriveInfo, device_type, "Device type = %d (0: disk 1: SSD)\n", {.words = kDeviceTypes}),
    FIELD(StorPhyDriveInfo, interface_type, "Interface Type = %d (0: UNK, 1: Sata, 2: SAS)\n",
          {.words = kInterfaceTypes}),
    FIELD(StorPhyDriveInfo, product_id, "Product ID = %s\n"),
    FIELD(StorPhyDriveInfo, vendor, "vendor = %s\n"),
    FIELD(StorPhyDriveInfo, firmware, "Firmware = %s\n"),
    FIELD(StorPhyDriveInfo, serial_num, "Serial Num = %s\n"),
    FIELD(StorPhyDriveInfo, status, "Status = %d\n", {.words = kDriveStatuses}),
    flag(FIELD(StorPhyDriveInfo, fault, "Fault = %s\n")),
    flag(FIELD(StorPhyDriveInfo, online, "Online = %s\n")),
    flag(FIELD(StorPhyDriveInfo, temp_valid, "Temp valid = %s\n")),
    FIELD(StorPhyDriveInfo, temperature, "Temperature = %d\n", {.unit = Unit::kCelsius, .only_if = {"temp_valid"}}),
    FIELD(StorPhyDriveInfo, rebuild_status, "rebuild_operation_progress status = %d\n"),
    FIELD(StorPhyDriveInfo, rebuild_percent_complete, "rebuild_operation_progress percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorPhyDriveInfo, rebuild_start_timestamp, "rebuild_operation_progress start timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, rebuild_end_timestamp, "rebuild_operation_progress end timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, copyback_status, "copyback_operation_progress status = %d\n"),
    FIELD(StorPhyDriveInfo, copyback_percent_complete, "copyback_operation_progress percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorPhyDriveInfo, copyback_start_timestamp, "copyback_operation_progress start timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, copyback_end_timestamp, "copyback_operation_progress end timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    flag(FIELD(StorPhyDriveInfo, boot_drive, "Boot drive = %s\n")),
    FIELD(StorPhyDriveInfo, mod_timestamp, "Mod timestamp = %d\n"),
    FIELD(StorPhyDriveInfo, product_id_v3, "product_id_v3 = %s\n"),
    FIELD(StorPhyDriveInfo, locator_state_v7, "locator_state_v7 = %d\n"),
    FIELD(StorPhyDriveInfo, patrol_read_status, "patrol_read_operation_progress_v7 status = %d\n"),
    FIELD(StorPhyDriveInfo, patrol_read_percent_complete, "patrol_read_operation_progress_v7 percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorPhyDriveInfo, patrol_read_start_timestamp, "patrol_read_operation_progress_v7 start timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, patrol_read_end_timestamp, "patrol_read_operation_progress_v7 end timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, clear_status, "clear_operation_progress_v7 status = %d\n"),
    FIELD(StorPhyDriveInfo, clear_percent_complete, "clear_operation_progress_v7 percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorPhyDriveInfo, clear_start_timestamp, "clear_operation_progress_v7 start timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, clear_end_timestamp, "clear_operation_progress_v7 end timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, erase_status, "erase_operation_progress_v7 status = %d\n"),
    FIELD(StorPhyDriveInfo, erase_percent_complete, "erase_operation_progress_v7 percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {-1}}),
    FIELD(StorPhyDriveInfo, erase_start_timestamp, "erase_operation_progress_v7 start timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    FIELD(StorPhyDriveInfo, erase_end_timestamp, "erase_operation_progress_v7 end timestamp = 0x%x\n",
          {.unit = Unit::kTimeStamp, .none = {MC_STORE_NO_TIME}}),
    attachment(FIELD(StorPhyDriveInfo, enclosure_association, "Enclosure Association = %s\n")),
    FIELD(StorPhyDriveInfo, enclosure_logical_id, "Enclosure Logical ID = 0x%s\n"),
    FIELD(StorPhyDriveInfo, enclosure_sas_address[0], "Enclosure SAS Address[0] = 0x%llx\n",
          {.base = Base::kHexadecimal}),
    FIELD(StorPhyDriveInfo, enclosure_sas_address[1], "Enclosure SAS Address[1] = 0x%llx\n",
          {.base = Base::kHexadecimal}),
    FIELD(StorPhyDriveInfo, physical_block_size, "Physical block Size = %d\n", {.unit = Unit::kBytes}),
    flag(FIELD(StorPhyDriveInfo, transport_ready, "Transport Ready = %s\n")),
    FIELD(StorPhyDriveInfo, status_desc, "Status Desc      = %s\n"),
    FIELD(StorPhyDriveInfo, powercycle_count, "Powercycle Count = %lld\n"),
    FIELD(StorPhyDriveInfo, power_on_hours, "Power On Hours   = %lld\n", {.unit = Unit::kHours}),
    FIELD(StorPhyDriveInfo, percentage_life, "Percentage Life  = %d\n", {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorPhyDriveInfo, wear_status_days, "Wear Status Days = %lld\n", {.unit = Unit::kDays}),
    FIELD(StorPhyDriveInfo, pd_sed_state, "PD SED state = 0x%x\n", {.base = Base::kBitSet}),
    FIELD(StorPhyDriveInfo, pd_error, "PD Error=   %s\n"),
    FIELD(StorPhyDriveInfo, extended_status, "Extended Status = %d\n"),
    FIELD(StorPhyDriveInfo, state, "State = %d\n"),
    FIELD(StorPhyDriveInfo, firmware_v37, "firmware_v37 = %s\n"),
});
static_assert(sizeof(StorPhyDriveInfo) == 453 && describes<StorPhyDriveInfo, kDrive>());
static_assert(sizeof(PhyDriveSummary) == 28);

// What stands before the records in the store file.
struct MC_STORE_PACKED DriveFileHeader {
  uint32_t noofDrives;
};

inline constexpr auto kDriveFileHeader = std::to_array<Field>({
    FIELD(DriveFileHeader, noofDrives, "noofDrives: %d\n"),
});
static_assert(describes<DriveFileHeader, kDriveFileHeader>());

inline constexpr auto kDriveIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(StorPhyDriveInfo, PhyDriveSummary, controller_index),
    IDENTITY_MEMBER(StorPhyDriveInfo, PhyDriveSummary, slot_num),
    IDENTITY_MEMBER(StorPhyDriveInfo, PhyDriveSummary, serial_num),
});

inline constexpr KindFacts kDriveFacts = {
    .name = "drives",
    .lock_path = kRaidLockPath,
    .store_path = "/var/storphydrive_info",
    .identity = kDriveIdentity,
    .gone = {"status", MC_STORE_PHYDRIVE_GONE},
    .greatest_count = std::numeric_limits<decltype(PhyDriveReplyHeader::count)>::max(),
};
static_assert(fits_table<kDrive, kDriveFacts>());

}  // namespace mcserver::records
