// Packed replies: a header, then records.

#include <fmt/core.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "mcstore/reply_parsers.h"

namespace mcstore {
namespace {

Value value_of(std::span<const Field> fields, const Field &field, std::span<const uint8_t> record, Endian endian) {
  if (field.type != mcserver::FieldType::kEntries) {
    Value value{.name = field.name, .raw = raw_value(record, field, endian), .text = {}};
    if (field.label) value.text = cell_text(record, field, endian);
    return value;
  }
  const auto counter = std::find_if(fields.begin(), fields.end(), [&](const Field &one) {
    return one.name == std::string_view(field.entries->count);
  });
  const uint64_t count = raw_number(record, *counter, endian);
  return {.name = field.name,
          .raw = raw_entries(record, field, count, endian),
          .text = entries_text(record, field, count, endian)};
}

Device device_from(const Kind &kind, std::span<const uint8_t> record, Endian endian) {
  Device device;
  const std::span<const Field> fields = fields_of(kind, record);
  for (const Field &field : fields) device.values.push_back(value_of(fields, field, record, endian));
  return device;
}

}  // namespace

ParsedReply parse_binary_reply(const Kind &kind, const std::string &bytes) {
  const std::span all(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
  const BinaryLayout &layout = *kind.layout;
  if (all.size() < layout.header_size)
    throw MalformedReply(fmt::format("a reply of {} bytes is shorter than its header", all.size()));

  // A simulated reply tells itself by the byte order of its record size.
  ParsedReply reply;
  reply.is_simulated = raw_number(all, layout.record_size, Endian::kLittle) == kind.record_size;
  const Endian endian = reply.is_simulated ? Endian::kLittle : Endian::kBig;
  const uint64_t record_size = raw_number(all, layout.record_size, endian);
  if (record_size != kind.record_size)
    throw MalformedReply(
        fmt::format("the reply announces records of {} bytes, not of {}", record_size, kind.record_size));

  const uint64_t count = raw_number(all, layout.count, endian);
  const uint64_t length = layout.header_size + count * kind.record_size;
  if (all.size() != length)
    throw MalformedReply(fmt::format("a reply with {} records has {} bytes, not {}", count, length, all.size()));

  if (layout.state) reply.state = raw_number(all, *layout.state, endian);
  for (size_t offset = layout.header_size; offset < all.size(); offset += kind.record_size)
    reply.devices.push_back(device_from(kind, all.subspan(offset, kind.record_size), endian));
  return reply;
}

}  // namespace mcstore
