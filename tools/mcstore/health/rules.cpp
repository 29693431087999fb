#include "mcstore/health/rules.h"

#include <fmt/core.h>

#include "mcserver_storage.h"

namespace mcstore {
namespace {

using enum Health;
using C = Condition;

// What is not defined is not guessed: status, state and extended_status of a drive have no known values, so nothing is
// judged by them.
constexpr Rule kRules[] = {
    {"controllers", "controller_status", C::is(MC_STORE_CONTROLLER_UNRESPONSIVE), kCritical, "does not respond"},
    {"controllers", "controller_status", C::not_between(MC_STORE_CONTROLLER_OPTIMAL, MC_STORE_CONTROLLER_UNRESPONSIVE),
     kUnknown, "controller status {} is not known"},
    {"controllers", "memory_uncorrectable_errors", kIsTrue, kCritical, "{} uncorrectable memory errors"},
    {"controllers", "is_supported", kIsFalse, kWarning, "is not supported"},
    {"controllers", "pinned_cache_state", C::is(MC_STORE_PINNED_CACHE_PRESENT), kWarning, "pinned cache is present"},
    {"controllers", "controller_error", C::is_text(), kWarning, "error: {}"},
    {"controllers", "pending_firmware_version", C::is_text(), kOk, "firmware {} is pending"},

    {"drives", "fault", kIsTrue, kCritical, "has a fault"},
    {"drives", "predictive_failure_count", kIsTrue, kWarning, "predicts its failure (count {})"},
    {"drives", "pd_error", C::is_text(), kWarning, "error: {}"},
    {"drives", "online", kIsFalse, kOk, "is not online"},
    {"drives", "disabled_for_removal", kIsTrue, kOk, "is disabled for removal"},
    {"drives", "media_err_count", kIsTrue, kOk, "{} media errors"},
    {"drives", "other_err_count", kIsTrue, kOk, "{} other errors"},
    {"drives", "rebuild_percent_complete", C::between(0, 99), kOk, "rebuild at {}"},
    {"drives", "copyback_percent_complete", C::between(0, 99), kOk, "copyback at {}"},
    {"drives", "patrol_read_percent_complete", C::between(0, 99), kOk, "patrol read at {}"},
    {"drives", "clear_percent_complete", C::between(0, 99), kOk, "clear at {}"},
    {"drives", "erase_percent_complete", C::between(0, 99), kOk, "erase at {}"},

    {"virtual-drives", "status", C::between(MC_STORE_VIRTDRIVE_DEGRADED, MC_STORE_VIRTDRIVE_OFFLINE), kCritical,
     "is {}"},
    {"virtual-drives", "status", C::between(MC_STORE_VIRTDRIVE_CACHE_DEGRADED, MC_STORE_VIRTDRIVE_PARTIALLY_DEGRADED),
     kWarning, "is {}"},
    {"virtual-drives", "status", C::not_between(MC_STORE_VIRTDRIVE_OPTIMAL, MC_STORE_VIRTDRIVE_OFFLINE), kUnknown,
     "status is {}"},
    {"virtual-drives", "reconstruction_percent_complete", C::between(0, 99), kOk, "reconstruction at {}"},
    {"virtual-drives", "consistency_check_percent_complete", C::between(0, 99), kOk, "consistency check at {}"},
    {"virtual-drives", "init_percent_complete", C::between(0, 99), kOk, "initialisation at {}"},

    {"bbus", "voltage_low", kIsTrue, kWarning, "voltage is low"},
    {"bbus", "temp_high", kIsTrue, kWarning, "temperature is high"},
    {"bbus", "charging_state", C::is(MC_STORE_CHARGING_FULLY_DISCHARGED), kWarning, "is fully discharged"},
    {"bbus", "learn_cycle_status", C::is(MC_STORE_OPERATION_FAILED), kWarning, "learn cycle failed"},

    {"nvme-controllers", "status", C::is(MC_NVME_UNRESPONSIVE), kCritical, "status is {}"},
    {"nvme-controllers", "status", C::is(MC_NVME_SEVERE_FAULT), kCritical, "status is {}"},
    {"nvme-controllers", "status", C::is(MC_NVME_MODERATE_FAULT), kWarning, "status is {}"},
    {"nvme-controllers", "status", C::is(MC_NVME_DEGRADED), kWarning, "status is {}"},
    {"nvme-controllers", "status", C::is(MC_NVME_UNKNOWN), kUnknown, "status is {}"},
    {"nvme-controllers", "status", C::is(MC_NVME_DELETED), kUnknown, "status is {}"},
    {"nvme-controllers", "status", C::not_between(MC_NVME_UNKNOWN, MC_NVME_DEGRADED), kUnknown, "status is {}"},
    {"nvme-controllers", "switch_status", C::not_beginning_with("Optimal"), kWarning, "switch: {}"},
    {"nvme-controllers", "link_status", C::not_beginning_with("Optimal"), kWarning, "link: {}"},
    {"nvme-controllers", "pending_firmware_version", C::is_text(), kOk, "firmware {} is pending"},

    {"nvme-drives", "status", C::is(MC_NVME_UNRESPONSIVE), kCritical, "status is {}"},
    {"nvme-drives", "status", C::is(MC_NVME_SEVERE_FAULT), kCritical, "status is {}"},
    {"nvme-drives", "status", C::is(MC_NVME_MODERATE_FAULT), kWarning, "status is {}"},
    {"nvme-drives", "status", C::is(MC_NVME_DEGRADED), kWarning, "status is {}"},
    {"nvme-drives", "status", C::is(MC_NVME_UNKNOWN), kUnknown, "status is {}"},
    {"nvme-drives", "status", C::is(MC_NVME_DELETED), kUnknown, "status is {}"},
    {"nvme-drives", "status", C::not_between(MC_NVME_UNKNOWN, MC_NVME_DEGRADED), kUnknown, "status is {}"},
    {"nvme-drives", "temperature", C::at_least_field("shutdown_threshold"), kCritical,
     "temperature {} is at the shutdown threshold"},
    {"nvme-drives", "temperature", C::at_least_field("throttle_threshold"), kWarning,
     "temperature {} is at the throttle threshold"},
    {"nvme-drives", "drive_life_used_percent", C::at_least(100), kCritical, "{} of its life is used"},
    {"nvme-drives", "drive_life_used_percent", C::between(90, 99), kWarning, "{} of its life is used"},
};

constexpr StateRule kStateRules[] = {
    {"controllers", MC_STORE_STATE_READY},
    {"nvme-controllers", MC_NVME_STATE_MAIN_POWER},
    {"nvme-drives", MC_NVME_STATE_MAIN_POWER},
};

}  // namespace

bool Condition::holds(const Device &device, const Field &field) const {
  if (!device.is_known(field)) return false;
  if (test_ == Test::kText) return !device.text(field).empty();
  if (test_ == Test::kNotBeginning) return !device.text(field).starts_with(operand_);

  const std::optional<int64_t> number = device.number(field);
  if (!number) return false;
  if (test_ == Test::kAtLeastField) {
    const std::optional<int64_t> least = device.number(*device.find(operand_));
    return least && *number >= *least;
  }
  const bool is_between = *number >= least_ && *number <= greatest_;
  return test_ == Test::kBetween ? is_between : !is_between;
}

std::string Condition::in_words() const {
  switch (test_) {
    case Test::kText:
      return "is not empty";
    case Test::kNotBeginning:
      return fmt::format("does not begin with \"{}\"", operand_);
    case Test::kAtLeastField:
      return fmt::format("is at least `{}`", operand_);
    case Test::kBetween:
      if (greatest_ == INT64_MAX) return fmt::format("is at least {}", least_);
      return least_ == greatest_ ? fmt::format("is {}", least_) : fmt::format("is from {} to {}", least_, greatest_);
    case Test::kOutside:
      return least_ == greatest_ ? fmt::format("is not {}", least_)
                                 : fmt::format("is not from {} to {}", least_, greatest_);
  }
  return "";
}

std::span<const Rule> rules() { return kRules; }

std::span<const StateRule> state_rules() { return kStateRules; }

}  // namespace mcstore
