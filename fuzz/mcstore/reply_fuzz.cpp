// Fuzzes replies: the packed ones, and those in XML, which are compared with records.

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "mcstore/source/reply.h"
#include "mcstore/source/xml_reply.h"

using namespace mcstore;

// The first byte chooses the kind; of an XML kind, the second one tells how many records there are to compare.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 2) return 0;
  const Kind &kind = kinds()[data[0] % kinds().size()];
  const Record rest(data + 2, size - 2);
  if (kind.layout) {
    try {
      parse_reply(kind, rest);
    } catch (const MalformedReply &) {
    }
    return 0;
  }
  const size_t records = std::min(data[1] * kind.record_size, rest.size() / kind.record_size * kind.record_size);
  const Record reply = rest.subspan(records);
  contradiction(kind, {reinterpret_cast<const char *>(reply.data()), reply.size()}, rest.first(records));
  return 0;
}
