#include "mcstore/format.h"

namespace mcstore {

std::string format_json(const Kind &kind, const Reply &reply) {
  Json root = {{"format", 1}, {"kind", kind.name}, {"simulated", reply.is_simulated}};
  if (reply.state) root["subsystem_state"] = *reply.state;
  root["records"] = Json::array();
  for (const Device &device : reply.devices) {
    Json object = Json::object();
    for (const Value &value : device.values) object[value.name] = value.json;
    root["records"].push_back(std::move(object));
  }
  return dump_json(root) + '\n';
}

}  // namespace mcstore
