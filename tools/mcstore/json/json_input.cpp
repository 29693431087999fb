#include "mcstore/json/json_input.h"

#include <fmt/core.h>

#include <set>
#include <vector>

#include "mcstore/collect/store_content.h"

namespace mcstore {
namespace {

// The library keeps the last of two equal keys without a word; here the first one would be lost.
class DuplicateKeys {
 public:
  bool operator()(int, Json::parse_event_t event, Json &value) {
    if (event == Json::parse_event_t::object_start) objects_.emplace_back();
    if (event == Json::parse_event_t::object_end) objects_.pop_back();
    if (event == Json::parse_event_t::key && !objects_.back().insert(value.get<std::string>()).second)
      refuse(value.get<std::string>(), "this key stands twice in one object");
    return true;
  }

 private:
  std::vector<std::set<std::string>> objects_;
};

}  // namespace

void refuse(const std::string &place, const std::string &problem) { throw InventoryError(place + ": " + problem); }

Json parse_json(const std::string &text) {
  DuplicateKeys duplicates;
  try {
    return Json::parse(
        text, [&](int depth, Json::parse_event_t event, Json &value) { return duplicates(depth, event, value); });
  } catch (const Json::parse_error &error) {
    const std::string message = error.what();
    throw InventoryError(message.substr(message.find("] ") + 2));  // after the library's own error code
  }
}

const Json &as_object(const Json &json, const std::string &place) {
  if (!json.is_object()) refuse(place, "must be an object");
  return json;
}

std::string as_text(const Json &json, size_t longest, const std::string &place) {
  if (!json.is_string()) refuse(place, "must be a string");
  auto text = json.get<std::string>();
  if (text.size() > longest) refuse(place, fmt::format("is {} bytes long: at most {} fit", text.size(), longest));
  if (text.find('\0') != text.npos) refuse(place, "contains a NUL");
  return text;
}

uint64_t as_number(const Json &json, int64_t smallest, uint64_t largest, const std::string &place) {
  if (!json.is_number_integer()) refuse(place, "must be a whole number");
  const bool fits = json.is_number_unsigned() ? json.get<uint64_t>() <= largest : json.get<int64_t>() >= smallest;
  if (!fits) refuse(place, fmt::format("{} does not fit: from {} to {} does", json.dump(), smallest, largest));
  return json.is_number_unsigned() ? json.get<uint64_t>() : static_cast<uint64_t>(json.get<int64_t>());
}

}  // namespace mcstore
