#include "mcstore/format.h"

namespace mcstore {

Json json_of(const Kind &kind, const Reply &reply) {
  Json object = {{"kind", kind.name}, {"simulated", reply.is_simulated}};
  if (reply.state) object["subsystem_state"] = *reply.state;
  object["records"] = Json::array();
  for (const Device &device : reply.devices) {
    Json record = Json::object();
    for (const Value &value : device.values) record[value.name] = value.json;
    object["records"].push_back(std::move(record));
  }
  return object;
}

std::string format_json(const Kind &kind, const Reply &reply) {
  Json root = {{"format", 1}};
  root.update(json_of(kind, reply));
  return dump_json(root) + '\n';
}

}  // namespace mcstore
