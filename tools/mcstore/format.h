// How a reply is shown. Every format walks the devices' fields as they come, so that none can lack one.
#pragma once

#include <cstddef>
#include <string>

#include "mcstore/kind.h"
#include "mcstore/reply.h"

namespace mcstore {

// A row for each field and a column for each device; as many devices side by side as `width` columns of text hold.
std::string format_table(const Kind &kind, const Reply &reply, size_t width);

// One object. Its keys are an interface: "format" is 1, and becomes 2 if a key ever changes its meaning.
std::string format_json(const Kind &kind, const Reply &reply);

// The same without "format", as a part of something larger.
Json json_of(const Kind &kind, const Reply &reply);

// The reply as it came, in hexadecimal.
std::string format_hex(const std::string &bytes);

}  // namespace mcstore
