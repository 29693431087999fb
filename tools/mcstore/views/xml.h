// Inventories as an XML document, which is well-formed whatever devices say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"

namespace mcstore {

// A text of any bytes as the content of an element or an attribute, all of it ASCII: other characters are references,
// and what is no character of XML, or no UTF-8, becomes \x1b and the like.
std::string xml_text(std::string_view text);

// The document is a begin, kinds and an end; a kind is a begin, devices and an end. So it takes no more memory than a
// device does.
std::string xml_begin(std::string_view place);
std::string xml_kind_begin(const KindInventory &inventory);
std::string xml_device(const Device &device, const Verdict &verdict);
std::string xml_kind_end();
std::string xml_end();

}  // namespace mcstore
