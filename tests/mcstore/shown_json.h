// JSON that mcstore prints. The library takes long to compile, so that no test includes it itself.
#pragma once

#include <concepts>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace tests {

class ShownJson {
 public:
  explicit ShownJson(const std::string &text);  // throws if it is none

  // A member or an element, which must be there.
  ShownJson operator[](const std::string &key) const;
  ShownJson operator[](size_t index) const;

  size_t size() const;
  std::vector<std::string> keys() const;  // in their order
  bool contains(const std::string &key) const;

  // In its shortest form.
  const std::string &text() const { return text_; }

  bool operator==(const ShownJson &) const = default;
  bool operator==(bool value) const { return text_ == (value ? "true" : "false"); }
  bool operator==(std::integral auto value) const { return text_ == std::to_string(value); }
  bool operator==(const std::string &value) const { return is_string(value); }
  bool operator==(const char *value) const { return is_string(value); }

 private:
  bool is_string(const std::string &value) const;

  std::string text_;
};

inline void PrintTo(const ShownJson &json, std::ostream *out) { *out << json.text(); }

}  // namespace tests
