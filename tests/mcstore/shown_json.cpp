#include "mcstore/shown_json.h"

#include <nlohmann/json.hpp>

namespace tests {
namespace {

using Json = nlohmann::ordered_json;

}  // namespace

ShownJson::ShownJson(const std::string &text) : text_(Json::parse(text).dump()) {}

ShownJson ShownJson::operator[](const std::string &key) const { return ShownJson(Json::parse(text_).at(key).dump()); }
ShownJson ShownJson::operator[](size_t index) const { return ShownJson(Json::parse(text_).at(index).dump()); }

size_t ShownJson::size() const { return Json::parse(text_).size(); }

std::vector<std::string> ShownJson::keys() const {
  std::vector<std::string> keys;
  const Json json = Json::parse(text_);
  for (const auto &[key, value] : json.items()) keys.push_back(key);
  return keys;
}

bool ShownJson::contains(const std::string &key) const { return Json::parse(text_).contains(key); }

bool ShownJson::is_string(const std::string &value) const { return Json::parse(text_) == Json(value); }

}  // namespace tests
