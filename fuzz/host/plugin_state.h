// What the plug-in remembers. A finding must not hang on the inputs before it, but the plug-in cannot be loaded anew
// for each: its counters of what was covered would go with it.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace fuzz {

class PluginState {
 public:
  // Remembers the variables of the plug-in, which this program is linked with, as they are now.
  PluginState();

  // Sets them to what they were. Memory that they owned is the caller's to free.
  void restore() const;

  // Does one of them point to this block?
  bool points_to(const void *block) const;

  // Is this place in its code?
  bool has_code(const void *place) const;

 private:
  const void *base_;  // where it is loaded
  std::vector<std::span<char>> variables_;
  std::vector<std::string> initial_;
};

}  // namespace fuzz
