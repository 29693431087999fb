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

struct Kind {
  std::string_view name = {};  // as the command line and JSON spell it
  std::string_view title;      // as people read it
  std::string_view full_entry_point;
  std::string_view delta_entry_point;
  std::string_view decoder = {};  // empty: the kind has no store file
  std::string_view printer = {};  // what prints a record as the decoder does

  std::string_view lock_path = {};
  std::string_view store_path = {};
  std::span<const Field> store_header = {};
  size_t record_size;
  std::span<const Field> fields;
  std::optional<Variant> variant = {};
  std::optional<BinaryLayout> layout = {};  // none: the kind answers in XML

  // Names of fields. The identity tells one device from another; the label is what people call a device. A delta
  // reports a gone device by this text of this field; beside it, only identity and label are sure to be there. The
  // field is empty for a kind that does not report gone devices.
  std::vector<std::string_view> identity = {};
  std::string_view label;
  std::string_view gone_field = {};
  std::string gone_text = {};
};

// The fields that this record has.
std::span<const Field> fields_of(const Kind &kind, std::span<const uint8_t> record);

const std::vector<Kind> &kinds();

// The kind of this name, which must be one of kinds().
const Kind &kind_named(std::string_view name);

}  // namespace mcstore
