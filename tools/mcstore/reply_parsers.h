// The two forms in which the plug-in answers. Both throw MalformedReply, and leave
// ParsedReply::bytes to their caller.
#pragma once

#include <string>

#include "mcstore/reply.h"

namespace mcstore {

ParsedReply parse_binary_reply(const Kind &kind, const std::string &bytes);
ParsedReply parse_xml_reply(const Kind &kind, const std::string &text);

}  // namespace mcstore
