#include "mcstore/watch.h"

#include <fmt/core.h>

#include <string_view>
#include <vector>

namespace mcstore {
namespace {

// The fields that differ, a line each.
std::string differences(const Device &before, const Device &after) {
  const auto shown = [](const std::string &text) { return text.empty() ? "(empty)" : text; };
  std::string lines;
  for (const Value &value : after.values) {
    const std::string old_text = before.text(value.name);
    const std::string new_text = after.text(value.name);
    if (old_text != new_text)
      lines += fmt::format("              {}: {} -> {}\n", value.name, shown(old_text), shown(new_text));
  }
  return lines;
}

}  // namespace

std::string Watcher::report(const ParsedReply &reply) {
  std::string lines;
  std::map<std::string_view, size_t> counts;
  const auto tell = [&](std::string_view what, const Device &device) {
    ++counts[what];
    lines += fmt::format("  {:<9} {}\n", what, describe(device));
  };

  for (const Device &device : reply.devices) {
    const std::string identity = identity_of(kind_, device);
    const auto known = known_.find(identity);
    if (is_gone(kind_, device)) {
      tell("gone", device);
      known_.erase(identity);
      continue;
    }
    if (known == known_.end()) {
      tell("new", device);
    } else {
      const std::string changes = differences(known->second, device);
      tell(changes.empty() ? "repeated" : "modified", device);  // some kinds report devices without news
      lines += changes;
    }
    known_[identity] = device;
  }

  std::vector<std::string> parts;
  for (const std::string_view what : {"new", "modified", "repeated", "gone"})
    if (counts.contains(what)) parts.push_back(fmt::format("{} {}", counts[what], what));
  return (parts.empty() ? "nothing changed" : joined(parts, ", ")) + '\n' + lines;
}

std::string Watcher::describe(const Device &device) const {
  std::vector<std::string> parts;
  for (const std::string_view name : kind_.identity)
    if (name != kind_.label) parts.push_back(fmt::format("{} {}", name, device.text(name)));
  const std::string label = device.text(kind_.label);
  return parts.empty() ? label : fmt::format("{} ({})", label, joined(parts, ", "));
}

}  // namespace mcstore
