// How a reply is shown. Every format walks the devices' fields as they come, so that none can lack one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "mcstore/kind.h"
#include "mcstore/reply.h"

namespace mcstore {

// A row for each field and a column for each device; as many devices side by side as `width` columns of text hold.
std::string format_table(const Kind &kind, const ParsedReply &reply, size_t width);

// One object, which is valid JSON whatever bytes the texts hold: what is not UTF-8 becomes U+FFFD. Its keys are an
// interface: "format" is 1, and becomes 2 if a key ever changes its meaning.
std::string format_json(const Kind &kind, const ParsedReply &reply);

// What came of asking for a kind: its reply, or a status other than 0.
struct Answer {
  const Kind *kind;
  std::variant<ParsedReply, int32_t> outcome;
};

// One object for all of them, likewise.
std::string format_json(std::span<const Answer> answers);

// The reply as it came, in hexadecimal.
std::string format_hex(const std::string &bytes);

}  // namespace mcstore
