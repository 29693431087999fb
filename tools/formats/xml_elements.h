// How a kind that answers in XML shows its records.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "mcstore/kinds/kind.h"

namespace formats {

struct XmlAttribute {
  std::string text;  // name="conversion"
  std::string field;
};

struct XmlElements {
  std::string summary;
  std::string device;
  size_t count_width;                           // bytes: the count of the devices wraps
  std::vector<XmlAttribute> attributes;         // of every device
  std::vector<XmlAttribute> switch_attributes;  // which follow for a switch
};

// Throws std::logic_error for a kind whose XML nobody has told of here.
XmlElements xml_elements(const mcstore::Kind &kind);

}  // namespace formats
