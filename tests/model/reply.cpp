#include "model/reply.h"

namespace model {

Bytes in_network_order(Bytes record, const std::vector<Number> &numbers) {
  for (const auto &[offset, width] : numbers) {
    Bytes reversed;
    for (size_t i = width; i-- > 0;) reversed.u8(record[offset + i]);
    record.put(offset, reversed);
  }
  return record;
}

}  // namespace model
