// Tells what changed from one delta call to the next.
#pragma once

#include <map>
#include <string>

#include "mcstore/kind.h"
#include "mcstore/reply.h"

namespace mcstore {

// A reply does not tell a new device from a modified one, so the watcher remembers every device that it has seen.
class Watcher {
 public:
  explicit Watcher(const Kind &kind) : kind_(kind) {}

  const Kind &kind() const { return kind_; }

  // What the reply to the next delta call means, in lines of text.
  std::string report(const ParsedReply &reply);

 private:
  std::string describe(const Device &device) const;

  const Kind &kind_;
  std::map<std::string, Device> known_;  // each device as it was last reported, by its identity
};

}  // namespace mcstore
