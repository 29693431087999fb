// Packed replies: a header, then records.

#include <fmt/format.h>

#include <span>

#include "mcstore/reply_parsers.h"

namespace mcstore {
namespace {

Device device_from(const Kind &kind, std::span<const uint8_t> record, Endian endian) {
  Device device;
  for (const Field &field : fields_of(kind, record)) {
    Value value{.name = field.name, .json = json_value(record, field, endian), .text = {}};
    if (field.label) value.text = cell_text(record, field, endian);
    device.values.push_back(std::move(value));
  }
  return device;
}

}  // namespace

Reply parse_binary_reply(const Kind &kind, const std::string &bytes) {
  const std::span all(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
  const BinaryLayout &layout = *kind.layout;
  if (all.size() < layout.header_size)
    throw MalformedReply(fmt::format("a reply of {} bytes is shorter than its header", all.size()));

  // A simulated reply tells itself by the byte order of its record size.
  Reply reply;
  reply.is_simulated = number_at(all, layout.record_size, Endian::kLittle) == kind.record_size;
  const Endian endian = reply.is_simulated ? Endian::kLittle : Endian::kBig;
  const uint64_t record_size = number_at(all, layout.record_size, endian);
  if (record_size != kind.record_size)
    throw MalformedReply(
        fmt::format("the reply announces records of {} bytes, not of {}", record_size, kind.record_size));

  const uint64_t count = number_at(all, layout.count, endian);
  const uint64_t length = layout.header_size + count * kind.record_size;
  if (all.size() != length)
    throw MalformedReply(fmt::format("a reply with {} records has {} bytes, not {}", count, length, all.size()));

  if (layout.state) reply.state = number_at(all, *layout.state, endian);
  for (size_t offset = layout.header_size; offset < all.size(); offset += kind.record_size)
    reply.devices.push_back(device_from(kind, all.subspan(offset, kind.record_size), endian));
  return reply;
}

}  // namespace mcstore
