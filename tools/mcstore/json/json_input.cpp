#include "mcstore/json/json_input.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace mcstore {
namespace {

// An inventory needs less by far.
constexpr size_t kDeepest = 32;

// In place of the library's own words: it has read so many bytes when it gives up.
[[noreturn]] void refuse_syntax(std::string_view text, size_t bytes_read, bool is_too_large) {
  const std::string_view read = text.substr(0, bytes_read == 0 ? 0 : bytes_read - 1);
  const auto line = 1 + std::ranges::count(read, '\n');
  const size_t column = read.size() - (read.rfind('\n') + 1) + 1;
  const char *const problem = is_too_large               ? "no field takes a number as large as this"
                              : bytes_read > text.size() ? "the text ends before its JSON does"
                                                         : "this is not valid JSON";
  refuse(fmt::format("line {}, column {}", line, column), problem);
}

// Puts the values together as the parser comes to them, and refuses what the library's own builder takes: the last of
// two equal keys, where the first one would be lost, and any depth.
class Builder : public Json::json_sax_t {
 public:
  explicit Builder(std::string_view text) : text_(text) {}

  Json take() { return std::move(document_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t &) override { return add(value); }
  bool string(string_t &value) override { return add(std::move(value)); }
  bool binary(binary_t &) override { return false; }  // only other formats than JSON have it

  bool start_object(size_t) override { return enter(Json::object()); }
  bool end_object() override { return leave(); }
  bool start_array(size_t) override { return enter(Json::array()); }
  bool end_array() override { return leave(); }
  bool key(string_t &key) override {
    levels_.back().key = std::move(key);
    return true;
  }

  bool parse_error(size_t bytes_read, const std::string &, const Json::exception &error) override {
    refuse_syntax(text_, bytes_read, dynamic_cast<const Json::out_of_range *>(&error) != nullptr);
  }

 private:
  // An object or array that has begun. It stays where it is until its end: nothing is added beside it.
  struct Level {
    Json *container;
    std::string key = {};  // the last one of an object
  };

  Json &place_of(Json value) {
    if (levels_.empty()) return document_ = std::move(value);
    auto &[container, key] = levels_.back();
    if (container->is_array()) return container->emplace_back(std::move(value));
    const auto [member, is_new] = container->get_ref<Json::object_t &>().emplace(key, std::move(value));
    if (!is_new) refuse(way(), "this key stands twice in one object");
    return member->second;
  }

  bool add(Json value) {
    place_of(std::move(value));
    return true;
  }

  bool enter(Json container) {
    Json &entered = place_of(std::move(container));
    if (levels_.size() == kDeepest) refuse(way(), fmt::format("is nested deeper than {} levels", kDeepest));
    levels_.push_back({&entered});
    return true;
  }

  bool leave() {
    levels_.pop_back();
    return true;
  }

  // To the last value.
  std::string way() const {
    std::string way;
    for (const auto &[container, key] : levels_)
      way = container->is_array() ? fmt::format("{}[{}]", way, container->size() - 1) : member_of(way, key);
    return way;
  }

  std::string_view text_;
  Json document_;
  std::vector<Level> levels_;
};

}  // namespace

void refuse(const std::string &place, const std::string &problem) { throw InventoryError(place + ": " + problem); }

std::string member_of(const std::string &place, std::string_view key) {
  return place.empty() ? std::string(key) : fmt::format("{}.{}", place, key);
}

Json parse_json(const std::string &text) {
  Builder builder(text);
  Json::sax_parse(text, &builder);
  return builder.take();
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
