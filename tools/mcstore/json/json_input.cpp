#include "mcstore/json/json_input.h"

#include <fmt/core.h>

#include <algorithm>
#include <set>
#include <vector>

namespace mcstore {
namespace {

// An inventory needs less by far.
constexpr size_t kDeepest = 32;

// Follows the parser through a text, to refuse what the library takes without a word: the last of two equal keys, where
// the first one would be lost, and any depth.
class Follower {
 public:
  bool operator()(int, Json::parse_event_t event, Json &value) {
    switch (event) {
      case Json::parse_event_t::object_start:
      case Json::parse_event_t::array_start:
        enter();
        break;
      case Json::parse_event_t::object_end:
      case Json::parse_event_t::array_end:
        levels_.pop_back();
        pass_element();
        break;
      case Json::parse_event_t::key:
        take_key(value.get<std::string>());
        break;
      case Json::parse_event_t::value:
        pass_element();
        break;
    }
    return true;
  }

 private:
  // An object or array that has begun.
  struct Level {
    std::set<std::string> keys = {};
    std::string key = {};  // the last one; empty in an array
    size_t elements = 0;   // that are behind
  };

  void enter() {
    if (levels_.size() == kDeepest) refuse(place(), fmt::format("is nested deeper than {} levels", kDeepest));
    levels_.emplace_back();
  }

  void pass_element() {
    if (!levels_.empty()) ++levels_.back().elements;
  }

  void take_key(const std::string &key) {
    Level &level = levels_.back();
    level.key = key;
    if (!level.keys.insert(key).second) refuse(place(), "this key stands twice in one object");
  }

  std::string place() const {
    std::string way;
    for (const Level &level : levels_)
      way = level.keys.empty() ? fmt::format("{}[{}]", way, level.elements) : member_of(way, level.key);
    return way;
  }

  std::vector<Level> levels_;
};

// In whose place the library's words would not help: it has read so many bytes when it gives up.
[[noreturn]] void refuse_syntax(std::string_view text, size_t bytes_read) {
  const std::string_view read = text.substr(0, bytes_read == 0 ? 0 : bytes_read - 1);
  const auto line = 1 + std::ranges::count(read, '\n');
  const size_t column = read.size() - (read.rfind('\n') + 1) + 1;
  refuse(fmt::format("line {}, column {}", line, column),
         bytes_read > text.size() ? "the text ends before its JSON does" : "this is not valid JSON");
}

}  // namespace

void refuse(const std::string &place, const std::string &problem) { throw InventoryError(place + ": " + problem); }

std::string member_of(const std::string &place, std::string_view key) {
  return place.empty() ? std::string(key) : fmt::format("{}.{}", place, key);
}

Json parse_json(const std::string &text) {
  Follower follower;
  try {
    return Json::parse(
        text, [&](int depth, Json::parse_event_t event, Json &value) { return follower(depth, event, value); });
  } catch (const Json::parse_error &error) {
    refuse_syntax(text, error.byte);
  } catch (const Json::out_of_range &) {
    throw InventoryError("a number in it is too large for any field");
  }
}

const Json &as_object(const Json &json, const std::string &place) {
  if (!json.is_object()) refuse(place, "must be an object");
  return json;
}

const Json &as_array(const Json &json, const std::string &place) {
  if (!json.is_array()) refuse(place, "must be an array");
  return json;
}

void refuse_other_keys(const Json &object, std::initializer_list<std::string_view> keys, const std::string &place) {
  for (const auto &[key, value] : object.items())
    if (std::ranges::find(keys, key) == keys.end()) refuse(member_of(place, key), "is not a key of this object");
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
