// One device of an inventory: its record, seen through its kind's table.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"

namespace mcstore {

// Cheap to copy; the bytes belong to the inventory that it came from.
class Device {
 public:
  // `position` counts the kind's devices from 0. `stored` are the bytes in the store file, which the plug-in may have
  // completed in `record`.
  Device(const Kind &kind, size_t position, Record record, Record stored)
      : kind_(&kind), position_(position), record_(record), stored_(stored) {}

  const Kind &kind() const { return *kind_; }
  Record record() const { return record_; }
  Record stored() const { return stored_; }

  // The fields that this record has.
  std::span<const Field> fields() const { return fields_of(*kind_, record_); }

  // The field of this name; null if this device has none.
  const Field *find(std::string_view name) const;

  // Does the field mean something here? Not where its value stands for none, or another field says that it does not.
  bool is_known(const Field &field) const;

  // The field's number, where it is one and means something.
  std::optional<int64_t> number(const Field &field) const;

  // The field as people read it; "none" where it means nothing. Not yet printable.
  std::string text(const Field &field) const;
  std::string text(std::string_view name) const;  // empty if this device does not have it

  // The entries of an array that count.
  std::vector<Record> entries(const Field &field) const;

  // What people call the device ("c0/e62/s2", "vd c0/0"), where it is, and what it is. Not yet printable.
  std::string name() const;
  std::string place() const;
  std::string model() const { return text(kind_->model); }

  // Is it meant by this word of a user: its name, with or without the kind's prefix, or a text that tells it from
  // others, such as its serial number?
  bool is_called(std::string_view word) const;

  // What tells the device from all others of its kind, as a key.
  std::string identity() const;

 private:
  std::string filled_in(std::string_view pattern) const;

  const Kind *kind_;
  size_t position_;
  Record record_;
  Record stored_;
};

}  // namespace mcstore
