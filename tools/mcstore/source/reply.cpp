#include "mcstore/source/reply.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>

namespace mcstore {
namespace {

using mcserver::ByteOrder;

// From the order of the network to that of the files.
void turn(std::span<const Field> fields, std::span<uint8_t> record) {
  for (const Field &field : fields) {
    const std::span<uint8_t> bytes = record.subspan(field.offset, field.width);
    if (field.entries) {
      for (size_t i = 0; i < bytes.size(); i += field.entries->size)
        turn(field.entries->fields, bytes.subspan(i, field.entries->size));
    } else if (field.order == ByteOrder::kNetwork) {
      std::ranges::reverse(bytes);
    }
  }
}

// The numbers of a simulated reply are little-endian.
uint64_t header_number(Record bytes, const Field &field, bool is_real) {
  std::vector<uint8_t> number(bytes.begin() + static_cast<std::ptrdiff_t>(field.offset),
                              bytes.begin() + static_cast<std::ptrdiff_t>(field.offset + field.width));
  if (is_real && field.order == ByteOrder::kNetwork) std::ranges::reverse(number);
  Field alone = field;
  alone.offset = 0;
  return raw_number(number, alone);
}

}  // namespace

Reply parse_reply(const Kind &kind, Record bytes) {
  Reply reply;
  if (bytes.empty()) return reply;
  const BinaryLayout &layout = *kind.layout;
  if (bytes.size() < layout.header_size)
    throw MalformedReply(fmt::format("a reply of {} bytes is shorter than its header", bytes.size()));

  // A simulated reply tells itself by the byte order of its record size.
  reply.is_simulated = header_number(bytes, layout.record_size, false) == kind.record_size;
  const bool is_real = !reply.is_simulated;
  const uint64_t record_size = header_number(bytes, layout.record_size, is_real);
  if (record_size != kind.record_size)
    throw MalformedReply(
        fmt::format("the reply announces records of {} bytes, not of {}", record_size, kind.record_size));

  const Record records = bytes.subspan(layout.header_size);
  const uint64_t count = header_number(bytes, layout.count, is_real);
  const uint64_t values = uint64_t{1} << (8 * layout.count.width);  // a count of one byte wraps at 256
  if (records.size() % record_size != 0 || records.size() / record_size % values != count)
    throw MalformedReply(fmt::format("a reply with {} records has {} bytes, not {}", count, bytes.size(),
                                     layout.header_size + count * record_size));

  if (layout.state) reply.state = header_number(bytes, *layout.state, is_real);
  reply.records.assign(records.begin(), records.end());
  if (!is_real) return reply;
  for (size_t at = 0; at < reply.records.size(); at += record_size) {
    const std::span<uint8_t> record = std::span(reply.records).subspan(at, record_size);
    turn(fields_of(kind, record), record);
  }
  return reply;
}

}  // namespace mcstore
