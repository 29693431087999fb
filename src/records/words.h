// The words for the codes in the records. A value without a word stays a number: only the collector knows what it
// means.
#pragma once

#include <array>

#include "mcserver_storage.h"
#include "shared/field.h"

namespace mcserver::records {

inline constexpr auto kSubsystemStates = std::to_array<Word>({
    {MC_STORE_STATE_NOT_READY, "not ready"},
    {MC_STORE_STATE_READY, "ready"},
});

inline constexpr auto kControllerStatuses = std::to_array<Word>({
    {MC_STORE_CONTROLLER_OPTIMAL, "optimal"},
    {MC_STORE_CONTROLLER_UNRESPONSIVE, "unresponsive"},
    {MC_STORE_CONTROLLER_GONE, "gone"},
});

inline constexpr auto kCoercionModes = std::to_array<Word>({
    {MC_STORE_COERCION_NONE, "none"},
    {MC_STORE_COERCION_128_MB, "128 MB"},
    {MC_STORE_COERCION_1_GB, "1 GB"},
});

inline constexpr auto kOperationStates = std::to_array<Word>({
    {MC_STORE_OPERATION_UNKNOWN, "unknown"},
    {MC_STORE_OPERATION_SUCCESS, "success"},
    {MC_STORE_OPERATION_ACTIVE, "active"},
    {MC_STORE_OPERATION_ABORTED, "aborted"},
    {MC_STORE_OPERATION_SUSPENDED, "suspended"},
    {MC_STORE_OPERATION_FAILED, "failed"},
});

inline constexpr auto kPinnedCacheStates = std::to_array<Word>({
    {MC_STORE_PINNED_CACHE_UNKNOWN, "unknown"},
    {MC_STORE_PINNED_CACHE_PRESENT, "present"},
    {MC_STORE_PINNED_CACHE_NOT_PRESENT, "not present"},
});

inline constexpr auto kDriveStatuses = std::to_array<Word>({
    {MC_STORE_PHYDRIVE_GONE, "gone"},
});

inline constexpr auto kPowerStates = std::to_array<Word>({
    {MC_STORE_POWER_ACTIVE, "active"},
    {MC_STORE_POWER_POWERSAVE, "powersave"},
    {MC_STORE_POWER_TRANSITIONING, "transitioning"},
});

inline constexpr auto kLinkSpeeds = std::to_array<Word>({
    {MC_STORE_LINK_SPEED_UNKNOWN, "unknown"},
    {MC_STORE_LINK_SPEED_1_5_GBPS, "1.5 Gb/s"},
    {MC_STORE_LINK_SPEED_3_GBPS, "3 Gb/s"},
    {MC_STORE_LINK_SPEED_6_GBPS, "6 Gb/s"},
    {MC_STORE_LINK_SPEED_12_GBPS, "12 Gb/s"},
});

inline constexpr auto kDeviceTypes = std::to_array<Word>({
    {MC_STORE_DEVICE_DISK, "disk"},
    {MC_STORE_DEVICE_SSD, "SSD"},
});

inline constexpr auto kInterfaceTypes = std::to_array<Word>({
    {MC_STORE_INTERFACE_UNKNOWN, "unknown"},
    {MC_STORE_INTERFACE_SATA, "SATA"},
    {MC_STORE_INTERFACE_SAS, "SAS"},
});

inline constexpr auto kBbuTypes = std::to_array<Word>({
    {MC_STORE_BBU_NONE, "none"},
    {MC_STORE_BBU_IBBU, "IBBU"},
    {MC_STORE_BBU_BBU, "BBU"},
    {MC_STORE_BBU_ZCR, "ZCR"},
    {MC_STORE_BBU_ITBBU3, "ITBBU3"},
    {MC_STORE_BBU_IBBU08, "IBBU08"},
    {MC_STORE_BBU_IBBU09, "IBBU09"},
    {MC_STORE_BBU_TMMC, "TMMC"},
});

inline constexpr auto kChargingStates = std::to_array<Word>({
    {MC_STORE_CHARGING_UNKNOWN, "unknown"},
    {MC_STORE_CHARGING_FULLY_DISCHARGED, "fully discharged"},
    {MC_STORE_CHARGING_FULLY_CHARGED, "fully charged"},
    {MC_STORE_CHARGING_DISCHARGING, "discharging"},
    {MC_STORE_CHARGING_CHARGING, "charging"},
    {MC_STORE_CHARGING_INITIALIZED, "initialized"},
    {MC_STORE_CHARGING_CAPACITOR, "capacitor"},
});

inline constexpr auto kLearnModes = std::to_array<Word>({
    {MC_STORE_LEARN_AUTO, "auto"},
    {MC_STORE_LEARN_DISABLED, "disabled"},
    {MC_STORE_LEARN_WARN, "warn"},
});

inline constexpr auto kVirtualDriveStatuses = std::to_array<Word>({
    {MC_STORE_VIRTDRIVE_OPTIMAL, "optimal"},
    {MC_STORE_VIRTDRIVE_CACHE_DEGRADED, "cache degraded"},
    {MC_STORE_VIRTDRIVE_PARTIALLY_DEGRADED, "partially degraded"},
    {MC_STORE_VIRTDRIVE_DEGRADED, "degraded"},
    {MC_STORE_VIRTDRIVE_OFFLINE, "offline"},
    {MC_STORE_VIRTDRIVE_UNKNOWN, "unknown"},
    {MC_STORE_VIRTDRIVE_GONE, "gone"},
});

inline constexpr auto kAccessPolicies = std::to_array<Word>({
    {MC_STORE_ACCESS_READ_WRITE, "read and write"},
    {MC_STORE_ACCESS_UNKNOWN, "unknown"},
    {MC_STORE_ACCESS_READ_ONLY, "read only"},
    {MC_STORE_ACCESS_BLOCKED, "blocked"},
});

inline constexpr auto kIoPolicies = std::to_array<Word>({
    {MC_STORE_IO_DIRECT, "direct"},
    {MC_STORE_IO_CACHED, "cached"},
});

inline constexpr auto kReadAheadPolicies = std::to_array<Word>({
    {MC_STORE_READ_AHEAD, "ahead"},
    {MC_STORE_READ_NORMAL, "normal"},
});

inline constexpr auto kWriteCachePolicies = std::to_array<Word>({
    {MC_STORE_WRITE_UNKNOWN, "unknown"},
    {MC_STORE_WRITE_THROUGH, "write through"},
    {MC_STORE_WRITE_BACK, "write back"},
    {MC_STORE_WRITE_BACK_BAD_BBU, "write back, bad BBU"},
});

inline constexpr auto kDriveCachePolicies = std::to_array<Word>({
    {MC_STORE_DRIVE_CACHE_UNCHANGED, "unchanged"},
    {MC_STORE_DRIVE_CACHE_ENABLE, "enable"},
    {MC_STORE_DRIVE_CACHE_DISABLE, "disable"},
});

// These two are the plug-in's own words, in dumps and XML: hosts compare with them.
inline constexpr auto kNvmeStates = std::to_array<Word>({
    {MC_NVME_STATE_UNKNOWN, "Unknown"},
    {MC_NVME_STATE_UNINITIALIZED, "Uninitialized"},
    {MC_NVME_STATE_INITIALIZING, "Initializing"},
    {MC_NVME_STATE_AUX_POWER, "Aux_Power"},
    {MC_NVME_STATE_MAIN_POWER, "Main_Power"},
});

inline constexpr auto kNvmeStatuses = std::to_array<Word>({
    {MC_NVME_UNKNOWN, "Unknown"},
    {MC_NVME_OPTIMAL, "Optimal"},
    {MC_NVME_UNRESPONSIVE, "Unresponsive"},
    {MC_NVME_MODERATE_FAULT, "Moderate_Fault"},
    {MC_NVME_SEVERE_FAULT, "Severe_Fault"},
    {MC_NVME_DELETED, "Deleted"},
    {MC_NVME_DEGRADED, "Degraded"},
});

// Is the word of each value at the value's place, so that a table of the words alone can be looked up by value?
template <size_t Count>
consteval bool are_in_order(const std::array<Word, Count> &words) {
  for (size_t value = 0; value < Count; ++value)
    if (words[value].value != value) return false;
  return true;
}
static_assert(are_in_order(kNvmeStates) && are_in_order(kNvmeStatuses));

}  // namespace mcserver::records
