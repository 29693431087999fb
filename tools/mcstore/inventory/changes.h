// What differs between two looks at a kind of device.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/inventory/inventory.h"

namespace mcstore {

// As people read it, not yet printable; and the number behind the text, where there is one that means something.
struct ShownValue {
  std::string text;
  std::optional<uint64_t> number = {};

  bool operator==(const ShownValue &) const = default;
};

struct FieldChange {
  std::string name;              // an entry of an array is "pd[3]"
  const Field *field = nullptr;  // null for what is no field of a record
  ShownValue before;
  ShownValue after;
};

enum class ChangeType {
  kCame,
  kWent,
  kChanged,
  kStatus,  // it is not a device that changed, but what is known of the kind
};

// The device's bytes belong to the inventory that it is in.
struct Change {
  ChangeType type;
  const Kind *kind;
  std::optional<Device> device = {};     // as it is now, or was last
  std::vector<FieldChange> fields = {};  // those that differ, in their order
};

// "came", "went", "changed" or "status".
const char *word_for(ChangeType type);

// What is known of the kind, where that changed: whether it can be read, why not, how many devices there are, and the
// subsystem's state. That is compared with the last look that had data, which may be an earlier one.
std::vector<Change> status_changes(const KindInventory &before, const KindInventory &before_with_data,
                                   const KindInventory &after);

// The devices, where both looks have data: what could not be seen is not gone. Nor is what a damaged file lacks, and
// what such a file lacked before has not come. Devices are told apart by their identity; those that have the same one
// are paired in their order.
std::vector<Change> data_changes(const KindInventory &before, const KindInventory &after);

// What later looks are compared with, after one more: a look without data changes nothing, and a damaged one lacks
// devices that are still known as they were.
KindInventory remembered(const KindInventory &known, const KindInventory &look);

}  // namespace mcstore
