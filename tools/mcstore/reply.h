// A reply of the plug-in, taken apart. However a kind answers, in packed records or in XML, this is what the formats
// and the watcher work on.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "mcstore/kind.h"
#include "mcstore/value.h"

namespace mcstore {

// One field of a device: raw for programs, and as people read it. Reserved bytes have no text.
struct Value {
  std::string name;
  std::variant<RawValue, std::vector<RawEntry>> raw;
  std::optional<std::string> text;
};

struct Device {
  std::vector<Value> values;

  // The field's text; empty if the device does not have it.
  std::string text(std::string_view name) const;
};

struct ParsedReply {
  std::string bytes;  // as it came
  bool is_simulated = false;
  std::optional<RawValue> state;  // the subsystem's, where the kind has one and the reply is not empty
  std::vector<Device> devices;
};

// A reply that cannot be taken apart: the message says why.
class MalformedReply : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Takes the bytes apart; none at all is a reply without devices. Throws MalformedReply.
ParsedReply parse_reply(const Kind &kind, std::string bytes);

// Is this what a delta reports in place of a device that has disappeared?
bool is_gone(const Kind &kind, const Device &device);

// What tells the device from all others, as a key.
std::string identity_of(const Kind &kind, const Device &device);

}  // namespace mcstore
