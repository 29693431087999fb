// The kinds of device that the tool knows. All it does with a kind follows from its entry here and its record table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shared/field.h"

namespace mcstore {

using mcserver::Field;

// The header of a packed reply, and where it holds what the tool needs. Its numbers are big-endian, in a simulated
// reply little-endian.
struct BinaryLayout {
  std::span<const Field> header;
  size_t header_size;
  Field count;
  Field record_size;
  std::optional<Field> state;
};

// Another table, for the records whose flag is set.
struct Variant {
  Field flag;
  std::span<const Field> fields;
};

// In a device's name, instead of a field: its number among the kind's devices.
inline constexpr std::string_view kPosition = "#";

struct Kind {
  std::string_view name = {};  // as the command line and JSON spell it
  std::string_view title;      // as people read it
  std::string_view full_entry_point;
  std::string_view delta_entry_point;
  std::string_view decoder = {};  // empty: the kind has no store file
  std::string_view printer = {};  // what prints a record as the decoder does

  std::string_view lock_path = {};
  std::string_view store_path = {};  // empty: the kind has no store file
  std::span<const Field> store_header = {};
  std::optional<Field> stored_state = {};  // of the store header: the subsystem's state, and the number of records
  std::optional<Field> stored_count = {};
  size_t record_size;
  std::span<const Field> fields;
  std::optional<Variant> variant = {};
  std::optional<BinaryLayout> layout = {};  // none: the kind answers in XML
  uint64_t greatest_count = 0;              // of the devices that a reply can count

  std::vector<std::string_view> identity = {};  // names of the fields that tell one device from another
  // A delta reports a gone device by this text of this field, which is empty for a kind that does not report them.
  std::string_view gone_field = {};
  std::string gone_text = {};

  std::string_view prefix;       // of a device's short name, where kinds would have the same
  std::string_view device_name;  // the rest of it, with fields in braces
  std::string_view place;        // where the device is, likewise
  std::string_view model;        // the field that says what it is

  // The fields that are summed up for all devices of the kind, and whose least and greatest are told; empty for none.
  std::string_view capacity = {};
  std::string_view temperature = {};
};

// The fields that this record has.
std::span<const Field> fields_of(const Kind &kind, std::span<const uint8_t> record);

// The fields that some record of the kind can have, each name once.
std::vector<const Field *> every_field(const Kind &kind);

const std::vector<Kind> &kinds();

// The kind of this name: null when there is none, or one that must be there.
const Kind *find_kind(std::string_view name);
const Kind &kind_named(std::string_view name);

}  // namespace mcstore
