// The XML elements of controllers, and a controller's fields in the order in which XML and dump show them.
#pragma once

#include "records/nvme_controller_record.h"
#include "shared/field_proofs.h"

namespace mcserver::nvme::controllers {

inline constexpr char kSummaryElement[] = "NVME-ctlr-summary";
inline constexpr char kElement[] = "NVME-ctlr";

inline constexpr auto kNameAndType = rows_named(records::kNvmeController, "controller_name", "controller_type");
inline constexpr auto kStatusAndDrives = rows_named(records::kNvmeController, "status", "drive_count");

// Only a switch has these, and then the statuses of the switch and its link.
inline constexpr auto kSwitch =
    rows_named(records::kNvmeController, "vendor_id", "product_id", "component_id", "product_revision", "p2p_vendor_id",
               "p2p_device_id", "running_firmware_version", "pending_firmware_version", "switch_temperature");
inline constexpr Field kSwitchStatus = records::kNvmeController[row_of(records::kNvmeController, "switch_status")];
inline constexpr Field kLinkStatus = records::kNvmeController[row_of(records::kNvmeController, "link_status")];
inline constexpr auto kStatuses = std::to_array<Field>({kSwitchStatus, kLinkStatus});

static_assert(makes_attributes<kNameAndType>() && makes_attributes<kStatusAndDrives>() && makes_attributes<kSwitch>());

// Only the dump has this.
inline constexpr auto kModTimestamp = rows_named(records::kNvmeController, "mod_timestamp");
static_assert(
    is_shown_by<records::kNvmeController, kNameAndType, kStatusAndDrives, kSwitch, kStatuses, kModTimestamp>());

}  // namespace mcserver::nvme::controllers
