// A device in JSON, as docs/json.md describes it.
#pragma once

#include <string>
#include <vector>

#include "mcstore/health/health.h"
#include "mcstore/json/json_writer.h"
#include "mcstore/kinds/device.h"

namespace mcstore {

// The fields as one object. Together with their companions they tell each byte that the store file has.
void write_fields(JsonWriter &json, const Device &device);

// The members of an object that is begun: how the device is called, how it is, and its fields.
void write_device(JsonWriter &json, const Device &device, const Verdict &verdict);

// An array of texts.
void write_texts(JsonWriter &json, const std::vector<std::string> &texts);

}  // namespace mcstore
