// The XML elements of drives, and a drive's fields in the order in which XML and dump show them, which is not the
// record's.
#pragma once

#include "records/nvme_drive_record.h"
#include "shared/field_proofs.h"

namespace mcserver::nvme::drives {

inline constexpr char kSummaryElement[] = "NVME-phy-drive-summary";
inline constexpr char kElement[] = "NVME-phy-drive";

inline constexpr auto kShown =
    rows_named(records::kNvmeDrive, "controller_name", "smbios_pcislotname", "product_name", "status", "serial_number",
               "firmware_version", "vendor", "vendor_id", "device_id", "subvendor_id", "subdevice_id", "temperature",
               "status_description", "drive_life_used_percent", "life_left_in_days", "percent_power_on_hours",
               "performance_percent", "throttle_threshold", "shutdown_threshold");

static_assert(makes_attributes<kShown>());

// Only the dump has this; its line ends the record with an empty one.
inline constexpr auto kModTimestamp = rows_named(records::kNvmeDrive, "mod_timestamp");
static_assert(is_shown_by<records::kNvmeDrive, kShown, kModTimestamp>());

}  // namespace mcserver::nvme::drives
