// The inventory in JSON: as one document, or a line for each device. docs/json.md describes both.
#pragma once

#include <string>
#include <string_view>

#include "mcstore/health/health.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/json/json_writer.h"

namespace mcstore {

// What stands before the devices.
struct DocumentHead {
  std::string_view version;  // of this tool
  std::string time;          // ISO 8601, in UTC
  std::string root;          // where the inventory is from
};

// One document for all kinds, made one device at a time. Appends to a string of the caller's, who may empty it at any
// time.
class JsonDocument {
 public:
  explicit JsonDocument(std::string &out) : out_(out), json_(out, JsonWriter::Layout::kIndented) {}

  void begin(const DocumentHead &head);
  void begin_kind(const KindInventory &inventory);
  void add(const Device &device, const Verdict &verdict);
  void end_kind();
  void end();

 private:
  std::string &out_;
  JsonWriter json_;
};

// The device in a line of its own.
std::string ndjson_line(const Device &device, const Verdict &verdict);

}  // namespace mcstore
