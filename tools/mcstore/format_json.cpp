#include "mcstore/format.h"
#include "mcstore/json.h"

namespace mcstore {
namespace {

Json json_of(const RawValue &value) {
  return std::visit([](const auto &content) { return Json(content); }, value);
}

Json json_of(const std::vector<RawEntry> &entries) {
  Json list = Json::array();
  for (const RawEntry &entry : entries) {
    Json object = Json::object();
    for (const RawMember &member : entry) object[member.name] = json_of(member.value);
    list.push_back(std::move(object));
  }
  return list;
}

Json json_of(const Device &device) {
  Json object = Json::object();
  for (const Value &value : device.values)
    object[value.name] = std::visit([](const auto &raw) { return json_of(raw); }, value.raw);
  return object;
}

Json json_of(const Kind &kind, const ParsedReply &reply) {
  Json object = {{"kind", kind.name}, {"simulated", reply.is_simulated}};
  if (reply.state) object["subsystem_state"] = json_of(*reply.state);
  object["records"] = Json::array();
  for (const Device &device : reply.devices) object["records"].push_back(json_of(device));
  return object;
}

Json json_of(const Answer &answer) {
  if (const auto *reply = std::get_if<ParsedReply>(&answer.outcome)) return json_of(*answer.kind, *reply);
  return {{"kind", answer.kind->name}, {"status", std::get<int32_t>(answer.outcome)}};
}

std::string text_of(const Json &json) { return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n'; }

}  // namespace

std::string format_json(const Kind &kind, const ParsedReply &reply) {
  Json root = {{"format", 1}};
  root.update(json_of(kind, reply));
  return text_of(root);
}

std::string format_json(std::span<const Answer> answers) {
  Json inventory = Json::array();
  for (const Answer &answer : answers) inventory.push_back(json_of(answer));
  return text_of({{"format", 1}, {"inventory", std::move(inventory)}});
}

}  // namespace mcstore
