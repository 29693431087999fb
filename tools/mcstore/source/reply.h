// A packed reply, taken apart: a header, then records.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"

namespace mcstore {

// A reply that cannot be taken apart: the message says why.
class MalformedReply : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Reply {
  bool is_simulated = false;
  std::optional<uint64_t> state = {};  // the subsystem's, where the header has it
  std::vector<uint8_t> records = {};   // as a store file holds them
};

// Takes the bytes apart; none at all is a reply without devices. Throws MalformedReply.
Reply parse_reply(const Kind &kind, Record bytes);

}  // namespace mcstore
