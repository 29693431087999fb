// Writes JSON piece by piece, so that a text of any length takes no memory but its own.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace mcstore {

// Appends to a string of the caller's, who may empty it at any time. All of it is ASCII: whatever a text holds, nothing
// in it can disturb a terminal.
class JsonWriter {
 public:
  enum class Layout { kIndented, kOneLine };

  JsonWriter(std::string &out, Layout layout) : out_(out), layout_(layout) {}

  void begin_object() { begin('{'); }
  void end_object() { end('}'); }
  void begin_array() { begin('['); }
  void end_array() { end(']'); }

  // A member's key, which is a name of ours and needs no escapes; its value is what is written next.
  JsonWriter &key(std::string_view name);

  void null() { plain("null"); }
  void boolean(bool value) { plain(value ? "true" : "false"); }
  void number(std::integral auto value) { plain(std::to_string(value)); }
  // A text of any bytes; those that are no UTF-8 become U+FFFD. Was it UTF-8?
  bool text(std::string_view value);

 private:
  void begin(char bracket);
  void end(char bracket);
  void plain(std::string_view value);
  void separate();
  void new_line();

  std::string &out_;
  Layout layout_;
  size_t depth_ = 0;
  bool is_first_ = true;  // of its object or array
  bool is_behind_key_ = false;
};

}  // namespace mcstore
