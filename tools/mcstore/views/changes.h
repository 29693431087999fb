// Changes, for people and for programs.
//
// For programs each is a line of JSON:
//
//   {"kind", "change", "device", "model", "identity": {...}, "fields": [{"name", "before", "after"}]}
//
// "change" is one of came, went, changed and status; with status there is no device, no model and no identity. A field
// has the name that it has in an inventory, and "before" and "after" are texts, as people read them. Where it holds a
// number, "before_number" and "after_number" stand beside them, null for a value that means nothing. An event has its
// "time" first.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "mcstore/inventory/changes.h"

namespace mcstore {

enum class ChangeFormat { kText, kNdjson };

// A line, as text with one more for each field.
std::string shown_change(const Change &change, ChangeFormat format);

// One line, with the time: for people that of their day.
std::string shown_event(const Change &change, const struct timespec &when, ChangeFormat format);

// What there is when events begin to be watched for, in one line.
std::string shown_beginning(const std::vector<const KindInventory *> &inventories, const struct timespec &when,
                            ChangeFormat format);

}  // namespace mcstore
