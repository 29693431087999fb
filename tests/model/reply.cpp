#include "model/reply.h"

namespace model {

tests::Bytes in_network_order(tests::Bytes record, const std::vector<Number> &numbers) {
  for (const auto &[offset, width] : numbers) {
    tests::Bytes reversed;
    for (size_t i = width; i-- > 0;) reversed.u8(record[offset + i]);
    record.put(offset, reversed);
  }
  return record;
}

}  // namespace model
