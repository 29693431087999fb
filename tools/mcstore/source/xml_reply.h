// Replies in XML: a summary element, then an element for each device, all of them with attributes only.
#pragma once

#include <string>
#include <string_view>

#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"

namespace mcstore {

// The plug-in inserts texts as they are, so that one with a quote or an ampersand in it may make a reply that is no
// XML, or that says something else. Tells how the reply departs from these records, one behind the other; nothing when
// it says of each what the record does. Never throws.
std::string contradiction(const Kind &kind, std::string_view reply, Record records);

}  // namespace mcstore
