#include "model/reply.h"

namespace model {

tests::Bytes in_network_order(tests::Bytes record, const std::vector<Number> &numbers) {
  for (const auto &[offset, width] : numbers) {
    const tests::Bytes stored = record.slice(offset, width);
    for (size_t i = 0; i < width; ++i) record.put(offset + i, tests::little_endian().u8(stored[width - 1 - i]));
  }
  return record;
}

}  // namespace model
